#include "tests/macos/run/unwind/unwind.h"

#include <unwind.h>

#include "tests/macos/run/supply/tables.h"
#include "tests/macos/run/unwind/frame_table.h"

namespace macrun {

extern "C" void __register_frame(void*);  // libgcc's

void registerUnwinding(const Image& image) {
  static FrameTable table;  // the unwinder keeps looking into it
  addCompactFrames(table, image);
  addDwarfFrames(table, image);
  endTable(table);
  __register_frame(table.bytes.data());
}

// The executable's own C++ library calls these, which are the same on both systems (Itanium C++
// ABI).
static constexpr Supplied kUnwind[] = {
    function<_Unwind_DeleteException>("__Unwind_DeleteException"),
    function<_Unwind_GetIP>("__Unwind_GetIP"),
    function<_Unwind_GetLanguageSpecificData>("__Unwind_GetLanguageSpecificData"),
    function<_Unwind_GetRegionStart>("__Unwind_GetRegionStart"),
    function<_Unwind_RaiseException>("__Unwind_RaiseException"),
    function<_Unwind_Resume>("__Unwind_Resume"),
    function<_Unwind_SetGR>("__Unwind_SetGR"),
    function<_Unwind_SetIP>("__Unwind_SetIP"),
};
const SupplyTable kUnwindTable = tableOf(kUnwind);

}  // namespace macrun
