#include "platform/gnustep/download/http_transfer.h"

#include <cstring>

#include "platform/gnustep/download/certificate_authorities.h"

// More than any server sends; an endless head must not fill the memory.
static const size_t kLargestHead = 256 * 1024;

// Bytes read from the connection at once; the largest that libcurl takes.
static const long kReadSize = 512 * 1024;

HttpTransfer::HttpTransfer(const CurlLibrary& curl, CURLM* multi) : curl_(curl), multi_(multi) {}

HttpTransfer::~HttpTransfer() {
  if (easy_ != nullptr) {
    curl_.multiRemoveHandle(multi_, easy_);
    curl_.easyCleanup(easy_);
  }
  curl_.slistFreeAll(requestFields_);
}

bool HttpTransfer::start(const std::string& url, const HeaderFields& fields) {
  easy_ = curl_.easyInit();
  if (easy_ == nullptr) {
    return false;
  }
  for (const auto& [name, value] : fields) {
    curl_slist* longer = curl_.slistAppend(requestFields_, (name + ": " + value).c_str());
    if (longer == nullptr) {
      return false;
    }
    requestFields_ = longer;
  }
  setOptions(url);
  setTrust();
  return curl_.multiAddHandle(multi_, easy_) == CURLM_OK;
}

void HttpTransfer::setOptions(const std::string& url) {
  const auto set = curl_.easySetopt;
  set(easy_, CURLOPT_URL, url.c_str());
  set(easy_, CURLOPT_PROTOCOLS_STR, "http,https");
  set(easy_, CURLOPT_FOLLOWLOCATION, 0L);
  set(easy_, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  set(easy_, CURLOPT_NOSIGNAL, 1L);
  set(easy_, CURLOPT_BUFFERSIZE, kReadSize);
  set(easy_, CURLOPT_ERRORBUFFER, error_);
  set(easy_, CURLOPT_USERAGENT, "Quorvane");
  set(easy_, CURLOPT_HTTPHEADER, requestFields_);
  set(easy_, CURLOPT_HEADERFUNCTION, &HttpTransfer::onHeader);
  set(easy_, CURLOPT_HEADERDATA, this);
  set(easy_, CURLOPT_WRITEFUNCTION, &HttpTransfer::onBody);
  set(easy_, CURLOPT_WRITEDATA, this);
}

void HttpTransfer::setTrust() {
  const auto set = curl_.easySetopt;
  set(easy_, CURLOPT_SSL_VERIFYPEER, 1L);
  set(easy_, CURLOPT_SSL_VERIFYHOST, 2L);
  set(easy_, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  const char* authorities = certificateAuthorityFile();
  if (authorities != nullptr) {
    set(easy_, CURLOPT_CAINFO, authorities);
    set(easy_, CURLOPT_PROXY_CAINFO, authorities);
  }
}

size_t HttpTransfer::onHeader(char* bytes, size_t, size_t size, void* self) {
  auto* transfer = static_cast<HttpTransfer*>(self);
  ++transfer->activity_;
  return transfer->noteHeaderLine(std::string(bytes, size)) ? size : 0;
}

bool HttpTransfer::noteHeaderLine(std::string line) {
  headBytes_ += line.size();
  if (headBytes_ > kLargestHead) {
    return false;
  }
  if (headComplete_) {
    return true;  // a trailer after the body
  }
  line.erase(line.find_last_not_of("\r\n") + 1);
  const size_t colon = line.find(':');
  if (line.empty()) {
    noteHeadEnd();
  } else if (line.rfind("HTTP/", 0) == 0) {
    head_.fields.clear();  // the lines before belonged to an interim answer
  } else if (colon != std::string::npos) {
    const size_t value = line.find_first_not_of(" \t", colon + 1);
    head_.fields.emplace_back(line.substr(0, colon),
                              value == std::string::npos ? "" : line.substr(value));
  }
  return true;
}

void HttpTransfer::noteHeadEnd() {
  curl_.easyGetinfo(easy_, CURLINFO_RESPONSE_CODE, &head_.status);
  headComplete_ = head_.status >= 200;
}

size_t HttpTransfer::onBody(char* bytes, size_t, size_t size, void* self) {
  auto* transfer = static_cast<HttpTransfer*>(self);
  if (transfer->file_ == nullptr) {
    return CURL_WRITEFUNC_PAUSE;
  }
  ++transfer->activity_;
  if (!transfer->file_->write(bytes, size)) {
    transfer->fileFailed_ = true;
    return 0;
  }
  transfer->received_ += size;
  return size;
}

const ResponseHead* HttpTransfer::takeHead() {
  if (!headComplete_ || headTaken_) {
    return nullptr;
  }
  headTaken_ = true;
  curl_off_t length = -1;
  curl_.easyGetinfo(easy_, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
  head_.length = length;
  return &head_;
}

void HttpTransfer::receiveInto(PartialFile& file) {
  file_ = &file;
  curl_.easyPause(easy_, CURLPAUSE_CONT);
}

size_t HttpTransfer::takeReceived() {
  return std::exchange(received_, 0);
}

void HttpTransfer::noteEnd(CURL* handle, CURLcode result) {
  if (handle == easy_) {
    ended_ = true;
    result_ = result;
  }
}

std::string HttpTransfer::errorText() const {
  return error_[0] != 0 ? error_ : curl_.easyStrerror(result_);
}
