#ifndef QUORVANE_PLATFORM_GNUSTEP_DOWNLOAD_HTTP_TRANSFER_H
#define QUORVANE_PLATFORM_GNUSTEP_DOWNLOAD_HTTP_TRANSFER_H

#include <string>
#include <utility>
#include <vector>

#include "platform/gnustep/download/curl_library.h"
#include "platform/gnustep/download/partial_file.h"

using HeaderFields = std::vector<std::pair<std::string, std::string>>;

// A server's answer before the body.
struct ResponseHead {
  long status = 0;
  long long length = -1;  // of the body in bytes; -1 when the server did not say
  HeaderFields fields;
};

// One GET request over libcurl. The owner drives the multi handle and then asks what has happened:
// libcurl's callbacks only record it, so that the transfer may be destroyed whenever the owner is
// called. Redirects are not followed. One thread.
class HttpTransfer {
 public:
  // `multi` must outlive the transfer.
  HttpTransfer(const CurlLibrary& curl, CURLM* multi);
  ~HttpTransfer();
  HttpTransfer(const HttpTransfer&) = delete;
  HttpTransfer& operator=(const HttpTransfer&) = delete;

  // Starts requesting `url`, http or https, with `fields` added to the request. Returns false if
  // there is no memory.
  [[nodiscard]] bool start(const std::string& url, const HeaderFields& fields);

  // Returns the head if it has arrived since the last call, else null. The body waits meanwhile.
  const ResponseHead* takeHead();

  // Receives the body into `file`, which must be open and outlive the transfer.
  void receiveInto(PartialFile& file);

  // Returns how many bytes of the body have been written since the last call.
  size_t takeReceived();

  // Returns how often data arrived from the server.
  [[nodiscard]] unsigned long activity() const { return activity_; }

  // Records libcurl's result for the handle of a transfer that has ended.
  void noteEnd(CURL* handle, CURLcode result);
  [[nodiscard]] bool hasEnded() const { return ended_; }
  [[nodiscard]] CURLcode result() const { return result_; }
  // Returns whether the transfer ended because the file could not be written.
  [[nodiscard]] bool fileFailed() const { return fileFailed_; }
  // Returns one sentence about why the transfer failed.
  [[nodiscard]] std::string errorText() const;

 private:
  static size_t onHeader(char* bytes, size_t one, size_t size, void* self);
  static size_t onBody(char* bytes, size_t one, size_t size, void* self);
  bool noteHeaderLine(std::string line);
  void noteHeadEnd();
  void setOptions(const std::string& url);
  void setTrust();

  const CurlLibrary& curl_;
  CURLM* multi_;
  CURL* easy_ = nullptr;
  curl_slist* requestFields_ = nullptr;
  char error_[CURL_ERROR_SIZE] = "";

  ResponseHead head_;
  size_t headBytes_ = 0;
  bool headComplete_ = false;
  bool headTaken_ = false;
  PartialFile* file_ = nullptr;
  size_t received_ = 0;
  unsigned long activity_ = 0;
  bool fileFailed_ = false;
  bool ended_ = false;
  CURLcode result_ = CURLE_OK;
};

#endif
