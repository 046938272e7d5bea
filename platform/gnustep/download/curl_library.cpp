#include "platform/gnustep/download/curl_library.h"

#include <dlfcn.h>

#include <initializer_list>

namespace {

// Resolves names one after the other and remembers whether all were there.
class Resolver {
 public:
  explicit Resolver(void* library) : library_(library) {}

  template <typename Function>
  void operator()(Function& function, const char* name) {
    function = reinterpret_cast<Function>(dlsym(library_, name));
    complete_ = complete_ && function != nullptr;
  }

  bool isComplete() const { return complete_; }

 private:
  void* library_;
  bool complete_ = true;
};

bool resolve(CurlLibrary& curl, void* library) {
  Resolver find(library);
  find(curl.globalInit, "curl_global_init");
  find(curl.easyInit, "curl_easy_init");
  find(curl.easyCleanup, "curl_easy_cleanup");
  find(curl.easySetopt, "curl_easy_setopt");
  find(curl.easyGetinfo, "curl_easy_getinfo");
  find(curl.easyPause, "curl_easy_pause");
  find(curl.easyStrerror, "curl_easy_strerror");
  find(curl.url, "curl_url");
  find(curl.urlCleanup, "curl_url_cleanup");
  find(curl.urlSet, "curl_url_set");
  find(curl.urlGet, "curl_url_get");
  find(curl.free, "curl_free");
  find(curl.slistAppend, "curl_slist_append");
  find(curl.slistFreeAll, "curl_slist_free_all");
  find(curl.multiInit, "curl_multi_init");
  find(curl.multiCleanup, "curl_multi_cleanup");
  find(curl.multiSetopt, "curl_multi_setopt");
  find(curl.multiAddHandle, "curl_multi_add_handle");
  find(curl.multiRemoveHandle, "curl_multi_remove_handle");
  find(curl.multiSocketAction, "curl_multi_socket_action");
  find(curl.multiInfoRead, "curl_multi_info_read");
  return find.isComplete();
}

const CurlLibrary* openLibrary() {
  static CurlLibrary curl;
  for (const char* name : {"libcurl.so.4", "libcurl-gnutls.so.4"}) {
    void* library = dlopen(name, RTLD_NOW | RTLD_LOCAL);
    if (library != nullptr && resolve(curl, library) &&
        curl.globalInit(CURL_GLOBAL_DEFAULT) == CURLE_OK) {
      return &curl;
    }
  }
  return nullptr;
}

}  // namespace

const CurlLibrary* curlLibrary() {
  static const CurlLibrary* const curl = openLibrary();
  return curl;
}
