#include "formats/tail_marker.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/encoding/hex.h"

static std::string markerInHex() {
  char* block = allocAndInitMarker();
  char text[2 * TAIL_MARKER_SIZE + 1] = "";
  bytesToHex(text, reinterpret_cast<unsigned char*>(block), TAIL_MARKER_SIZE);
  free(block);
  return text;
}

TEST(TailMarker, HoldsThe128BytesOfTheFormat) {
  EXPECT_EQ(
      "1d432a505b7a1f642347212417323c50"
      "216c0466295c297b0b5b19332f4f0f4d"
      "2758182415394e792b7615593d574900"
      "112905652b1070665e2d406075433008"
      "614a747e401b533b5646371e4b2c7259"
      "30443a3c2f44782b2665717139732523"
      "101451243170104a0d05572a060a5321"
      "4d2c130036291a74472d1a552c2f4263",
      markerInHex());
}

TEST(TailMarker, EveryCallGivesABlockOfItsOwn) {
  char* first = allocAndInitMarker();
  char* second = allocAndInitMarker();
  EXPECT_NE(first, second);
  free(first);
  free(second);
}
