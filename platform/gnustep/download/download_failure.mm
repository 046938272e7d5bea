#import "platform/gnustep/download/download_failure.h"

#import "support/text/cocoa_text.h"

static NSInteger codeOf(CURLcode result) {
  switch (result) {
    case CURLE_UNSUPPORTED_PROTOCOL:
      return NSURLErrorUnsupportedURL;
    case CURLE_URL_MALFORMAT:
      return NSURLErrorBadURL;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
      return NSURLErrorCannotFindHost;
    case CURLE_COULDNT_CONNECT:
      return NSURLErrorCannotConnectToHost;
    case CURLE_OPERATION_TIMEDOUT:
      return NSURLErrorTimedOut;
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
      return NSURLErrorNetworkConnectionLost;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CACERT_BADFILE:
      return NSURLErrorSecureConnectionFailed;
    case CURLE_PEER_FAILED_VERIFICATION:
      return NSURLErrorServerCertificateUntrusted;
    default:
      return NSURLErrorBadServerResponse;
  }
}

NSError* downloadFailure(NSInteger code, const std::string& text, NSString* url) {
  NSDictionary* details = [NSDictionary
      dictionaryWithObjectsAndKeys:textFromUTF8(text.c_str()), NSLocalizedDescriptionKey, url,
                                   NSURLErrorFailingURLStringErrorKey, nil];
  return [NSError errorWithDomain:NSURLErrorDomain code:code userInfo:details];
}

NSError* failureOfTransfer(const HttpTransfer& transfer, NSString* url) {
  if (transfer.fileFailed()) {
    return downloadFailure(NSURLErrorCannotWriteToFile, "The file could not be written", url);
  }
  return downloadFailure(codeOf(transfer.result()), transfer.errorText(), url);
}
