#ifndef QUORVANE_PLATFORM_GNUSTEP_DOWNLOAD_REDIRECT_H
#define QUORVANE_PLATFORM_GNUSTEP_DOWNLOAD_REDIRECT_H

#include <string>

#include "platform/gnustep/download/http_transfer.h"

// Returns whether `url` is an http or https URL that libcurl understands.
[[nodiscard]] bool isHttpUrl(const CurlLibrary& curl, const std::string& url);

// Returns the URL to which the answer to `url` redirects, relative ones resolved, or an empty text
// if it does not redirect, or not to a URL.
std::string redirectOf(const CurlLibrary& curl, const std::string& url, const ResponseHead& head);

#endif
