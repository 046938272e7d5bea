#include "platform/gnustep/download/certificate_authorities.h"

#include <unistd.h>

#include <cstdlib>
#include <initializer_list>

const char* certificateAuthorityFile() {
  const char* chosen = getenv("SSL_CERT_FILE");
  if (chosen != nullptr && chosen[0] != 0) {
    return chosen;
  }
  for (const char* path : {"/etc/ssl/certs/ca-certificates.crt", "/etc/pki/tls/certs/ca-bundle.crt",
                           "/etc/ssl/ca-bundle.pem", "/etc/ssl/cert.pem"}) {
    if (access(path, R_OK) == 0) {
      return path;
    }
  }
  return nullptr;
}
