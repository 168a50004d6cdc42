// OpenViewer: one window for one log. A viewer that is started for a log which another one shows already asks
// that one to come to the front, with the site that is wanted, and ends.
#pragma once

#include <memory>
#include <optional>
#include <string>

class SingleInstance;

class OpenViewer {
 public:
  OpenViewer();
  ~OpenViewer();
  OpenViewer(const OpenViewer&) = delete;
  OpenViewer& operator=(const OpenViewer&) = delete;

  // From now on requests for this log (a full path) come here, unless a viewer that was there first takes
  // them.
  void Shows(const std::string& szLog);
  // What has been asked for since the last call: the site, empty for none.
  std::optional<std::string> Asked() const;

  // Asks the viewer that shows the log. False when there is none, or it does not answer within seconds.
  static bool Ask(const std::string& szLog, const std::string& szSite);

 private:
  std::unique_ptr<SingleInstance> pLock;
  std::string szRequest;  // the file in which a request comes
};
