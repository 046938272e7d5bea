#ifndef QUORVANE_PLATFORM_GNUSTEP_DOWNLOAD_CERTIFICATE_AUTHORITIES_H
#define QUORVANE_PLATFORM_GNUSTEP_DOWNLOAD_CERTIFICATE_AUTHORITIES_H

// Returns the path of the file with the certificate authorities to check servers against: the file
// that SSL_CERT_FILE names, else the system's bundle. Null if the system has it in none of the
// usual places; the TLS library's own default is used then. The text is not freed. Any thread.
const char* certificateAuthorityFile();

#endif
