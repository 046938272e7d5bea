#include "tools/formats/value_check.h"

#include <algorithm>
#include <cctype>

#include "tools/system/texts.h"

namespace tools {

std::string faultOfRequiredJava(const std::string& version) {
  constexpr size_t kMostDigits = 9;
  const bool isNumber =
      version.size() <= kMostDigits && version.find_first_not_of("0123456789") == std::string::npos;
  return isNumber ? "" : "Java versions are compared as whole numbers; write 8 for Java 1.8";
}

// The host of an http or https URL, with everything before and after it up to the path.
static std::string authorityOf(const std::string& url) {
  const size_t start = url.find("//") + 2;
  return url.substr(start, url.find_first_of("/?#", start) - start);
}

std::string hostOf(const std::string& url) {
  std::string host = authorityOf(url);
  host.erase(0, host.rfind('@') + 1);
  const size_t port = host.find(':', host[0] == '[' ? host.find(']') : 0);
  host.erase(std::min(port, host.size()));
  std::transform(host.begin(), host.end(), host.begin(),
                 [](unsigned char c) { return static_cast<char>(tolower(c)); });
  return host;
}

std::string faultOfUpdateUrl(const std::string& url) {
  if (url == "D") {
    return "";
  }
  if (!startsWith(url, "http://") && !startsWith(url, "https://")) {
    return "it must begin with http:// or https://, or be D if the property update_url gives it";
  }
  const std::string authority = authorityOf(url);
  if (authority.empty() || authority[0] == ':' || authority.back() == '@') {
    return "it names no server; write it like https://updates.example.org/hello";
  }
  const bool isPlain =
      std::all_of(url.begin(), url.end(), [](char c) { return c > ' ' && c < '\x7F'; });
  return isPlain ? "" : "a URL contains only ASCII and no blanks; write others as %20 and so on";
}

}  // namespace tools
