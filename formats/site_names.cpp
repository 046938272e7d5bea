#include "formats/site_names.h"

std::string versionFileName(const std::string& name) {
  return "Quorvane-" + name + "-version.txt";
}

std::string siteArchiveName(const std::string& name, const std::string& version) {
  return "Quorvane-" + name + "-" + version + "-archive.p2.l2";
}
