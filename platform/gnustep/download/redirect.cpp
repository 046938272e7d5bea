#include "platform/gnustep/download/redirect.h"

#include <strings.h>

namespace {

// A URL as parsed by libcurl.
class ParsedUrl {
 public:
  explicit ParsedUrl(const CurlLibrary& curl) : curl_(curl), url_(curl.url()) {}
  ~ParsedUrl() { curl_.urlCleanup(url_); }
  ParsedUrl(const ParsedUrl&) = delete;
  ParsedUrl& operator=(const ParsedUrl&) = delete;

  // Parses an absolute URL, or one relative to the previous one.
  bool take(const std::string& text) {
    const unsigned flags = CURLU_URLENCODE | CURLU_NON_SUPPORT_SCHEME;
    return url_ != nullptr && curl_.urlSet(url_, CURLUPART_URL, text.c_str(), flags) == CURLUE_OK;
  }

  std::string part(CURLUPart part) const {
    char* text = nullptr;
    if (url_ == nullptr || curl_.urlGet(url_, part, &text, 0) != CURLUE_OK) {
      return "";
    }
    std::string copy = text;
    curl_.free(text);
    return copy;
  }

 private:
  const CurlLibrary& curl_;
  CURLU* url_;
};

std::string locationOf(const ResponseHead& head) {
  for (const auto& [name, value] : head.fields) {
    if (strcasecmp(name.c_str(), "Location") == 0) {
      return value;
    }
  }
  return "";
}

bool isRedirect(long status) {
  return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

}  // namespace

bool isHttpUrl(const CurlLibrary& curl, const std::string& url) {
  ParsedUrl parsed(curl);
  if (!parsed.take(url)) {
    return false;
  }
  const std::string scheme = parsed.part(CURLUPART_SCHEME);
  return scheme == "http" || scheme == "https";
}

std::string redirectOf(const CurlLibrary& curl, const std::string& url, const ResponseHead& head) {
  const std::string location = isRedirect(head.status) ? locationOf(head) : "";
  ParsedUrl parsed(curl);
  if (location.empty() || !parsed.take(url) || !parsed.take(location)) {
    return "";
  }
  return parsed.part(CURLUPART_URL);
}
