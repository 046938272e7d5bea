#ifndef QUORVANE_PLATFORM_GNUSTEP_CURL_LIBRARY_H
#define QUORVANE_PLATFORM_GNUSTEP_CURL_LIBRARY_H

#include <curl/curl.h>

// The libcurl functions that downloads need. The library is opened at the first download: it pulls
// in some thirty others, which would cost every start of a program that links it 20 ms.
struct CurlLibrary {
  decltype(&curl_global_init) globalInit;
  decltype(&curl_easy_init) easyInit;
  decltype(&curl_easy_cleanup) easyCleanup;
  decltype(&curl_easy_setopt) easySetopt;
  decltype(&curl_easy_getinfo) easyGetinfo;
  decltype(&curl_easy_pause) easyPause;
  decltype(&curl_easy_strerror) easyStrerror;
  decltype(&curl_url) url;
  decltype(&curl_url_cleanup) urlCleanup;
  decltype(&curl_url_set) urlSet;
  decltype(&curl_url_get) urlGet;
  decltype(&curl_free) free;
  decltype(&curl_slist_append) slistAppend;
  decltype(&curl_slist_free_all) slistFreeAll;
  decltype(&curl_multi_init) multiInit;
  decltype(&curl_multi_cleanup) multiCleanup;
  decltype(&curl_multi_setopt) multiSetopt;
  decltype(&curl_multi_add_handle) multiAddHandle;
  decltype(&curl_multi_remove_handle) multiRemoveHandle;
  decltype(&curl_multi_socket_action) multiSocketAction;
  decltype(&curl_multi_info_read) multiInfoRead;
};

// Returns the opened library, or null if it is not installed. Any thread.
const CurlLibrary* curlLibrary();

#endif
