// Where the product keeps what it remembers, below HKEY_LOCAL_MACHINE.
#pragma once

namespace ProductKeys {

inline constexpr char szBase[] = "Software\\Tamsel\\Kestrova";
inline constexpr char szTimer[] = "Software\\Tamsel\\Kestrova\\Settings\\Timer";
inline constexpr char szManager[] = "Software\\Tamsel\\Kestrova\\Settings\\Manager";
inline constexpr char szLog[] = "Software\\Tamsel\\Kestrova\\Settings\\Log";
inline constexpr char szAllowCookie[] = "Software\\Tamsel\\Kestrova\\Settings\\AllowCookie";
inline constexpr char szLastLoc[] = "Software\\Tamsel\\Kestrova\\Settings\\LastLoc";
inline constexpr char szKeptFiles[] = "Software\\Tamsel\\Kestrova\\Settings\\KeptFiles";
inline constexpr char szWindow[] = "Software\\Tamsel\\Kestrova\\Settings\\Window";
inline constexpr char szAddress[] = "Software\\Tamsel\\Kestrova\\Address";
inline constexpr char szAddressKey[] = "Software\\Tamsel\\Kestrova\\AddressKey";
inline constexpr char szSetup[] = "Software\\Tamsel\\Kestrova\\Setup";
inline constexpr char szUpdates[] = "Software\\Tamsel\\Kestrova\\URL\\Kestrova";

// Below HKEY_CURRENT_USER, the user's own.
inline constexpr char szInternetSettings[] =
    "Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings";
inline constexpr char szShellFolders[] =
    "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

}  // namespace ProductKeys
