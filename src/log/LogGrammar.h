// LogGrammar: the form of a check log, for who writes it and who reads it. docs/log-line.md tells it in full.
//
// 8-bit text with CR LF line ends. A pass is a start line, an entry for each result, and an end line:
//   [START CHECK: MANUAL - 11/15/1999 5:44:21 PM]     or AUTO
//   CheckTime,Address,StatusText,elapsed seconds (0 to 59),Comment,ResultClass
//   [END CHECK]
// Fields are not quoted; a comma inside one is written as it is.
#pragma once

#include <string>
#include <string_view>

namespace LogGrammar {

inline constexpr std::string_view szStart = "[START CHECK: ";
inline constexpr std::string_view szStartManual = "[START CHECK: MANUAL - ";
inline constexpr std::string_view szStartAuto = "[START CHECK: AUTO - ";
inline constexpr std::string_view szStartEnd = "]";
inline constexpr std::string_view szEnd = "[END CHECK]";
inline constexpr char szFileEnding[] = ".kvl";  // of a check log's name
inline constexpr std::string_view szLineEnd = "\r\n";
inline constexpr char chField = ',';

// The marks that fields carry for a page.
inline constexpr std::string_view szBreak = "<BR>";
inline constexpr std::string_view szEmphasis = "<SPAN class=\"Emphasis\">";
inline constexpr std::string_view szEmphasisEnd = "</SPAN>";
// A field without them: a break becomes "; ", emphasis goes.
std::string WithoutMarks(std::string_view szField);

// Between two remarks of one comment.
inline constexpr std::string_view szRemark = "; ";

// The two addresses, or the two results, of an IP check in one field: "(1) A<BR>(2) B".
inline constexpr std::string_view szFirst = "(1) ";
inline constexpr std::string_view szSecond = "<BR>(2) ";
std::string Numbered(std::string_view szOne, std::string_view szOther);
// The first of the two; of a field that holds no two, all of it.
std::string_view FirstOfNumbered(std::string_view szField);
// The second; empty where it holds no two.
std::string_view SecondOfNumbered(std::string_view szField);

// What an address begins with, "http://" or one of those that stand for a site without any.
bool IsAddress(std::string_view szText);

}  // namespace LogGrammar
