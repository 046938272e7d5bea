#ifndef QUORVANE_CRYPTO_TOMCRYPT_H
#define QUORVANE_CRYPTO_TOMCRYPT_H

// LibTomCrypt's headers, as every file here includes them. The program has functions of its own
// that bear the names of stock ones; the stock declarations get other names, so that the program's
// have C++ linkage and the library's own tables keep pointing to the library's own functions.
#define LTM_DESC  // declares ltm_desc, the big numbers of LibTomMath
#define sha3_256_init stock_sha3_256_init
#define rsa_verify_hash_ex stock_rsa_verify_hash_ex
#include <tomcrypt.h>
#undef sha3_256_init
#undef LTM_DESC
#undef rsa_verify_hash_ex

#endif
