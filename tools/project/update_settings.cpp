#include "tools/project/update_settings.h"

#include "tools/formats/value_check.h"

namespace tools {

static const char kBackground[] = "background";
static constexpr long kDay = 86400;
static constexpr long kLongestInterval = 366 * kDay;
// A version that does not start falls back to the one before.
static constexpr long kFewestKept = 2;
static constexpr long kMostKept = 100;

bool isSet(const UpdateSettings& settings) {
  return !settings.check.empty() || settings.interval || settings.keep || !settings.url.empty();
}

static std::string faultOfUrl(const std::string& url) {
  if (url.empty()) {
    return "";
  }
  const std::string fault =
      url == "D" ? "leave it out to use the property update_url" : faultOfUpdateUrl(url);
  return fault.empty() ? "" : "url is \"" + url + "\"; " + fault;
}

std::string faultOf(const UpdateSettings& settings) {
  const std::string& check = settings.check;
  if (!check.empty() && check != kBackground && check != "before_start" && check != "never") {
    return "check is \"" + check + "\"; it is background, before_start or never";
  }
  const long interval = settings.interval.value_or(kDay);
  if (interval < 0 || interval > kLongestInterval) {
    return "interval is " + std::to_string(interval) +
           "; it is in seconds, 86400 for a day, at most a year";
  }
  const long keep = settings.keep.value_or(kFewestKept);
  if (keep < kFewestKept || keep > kMostKept) {
    return "keep is " + std::to_string(keep) +
           "; keep 2 to 100 versions, because a version that does not start falls back to "
           "the previous one";
  }
  return faultOfUrl(settings.url);
}

static std::string line(const char* key, const std::string& value) {
  std::string text = std::string(key) + "=";
  for (const char c : value) {
    text += c == '\\' ? std::string("\\\\") : std::string(1, c);
  }
  return text + "\n";
}

std::string encodeUpdateSettings(const UpdateSettings& settings) {
  std::string text = line("check", settings.check.empty() ? kBackground : settings.check) +
                     line("interval", std::to_string(settings.interval.value_or(kDay))) +
                     line("keep", std::to_string(settings.keep.value_or(kFewestKept)));
  if (!settings.url.empty()) {
    text += line("url", settings.url.back() == '/' ? settings.url : settings.url + "/");
  }
  return text;
}

}  // namespace tools
