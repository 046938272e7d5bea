#ifndef QUORVANE_TOOLS_VERIFY_PRODUCT_EXTRACTION_H
#define QUORVANE_TOOLS_VERIFY_PRODUCT_EXTRACTION_H

#include <string>

#include "archive/trust.h"

namespace tools {

struct Extraction {
  std::string archive;    // not compressed; it stays
  std::string name;       // what messages call it
  std::string folder;     // created, or empty already
  std::string unpack200;  // the tool for pack200 entries; empty for none
  Trust trust;
};

// Extracts an archive with the function that installers use, in a separate process, and hides that
// function's log. Throws InputError if it ends the process, with the log's last lines, or finds the
// signature wrong; the folder is then removed.
void extractAsProduct(const Extraction& extraction);

}  // namespace tools

#endif
