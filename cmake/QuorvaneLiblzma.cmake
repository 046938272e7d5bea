# liblzma, of one version on every system: it decodes faster than Debian 12's does (docs/performance.md).
# Only what the LZMA-alone format takes is compiled.

execute_process(
  COMMAND "${CMAKE_SOURCE_DIR}/scripts/fetch-liblzma" "${CMAKE_BINARY_DIR}/liblzma"
  COMMAND_ERROR_IS_FATAL ANY)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
  "${CMAKE_SOURCE_DIR}/cmake/liblzma.pinned" "${CMAKE_SOURCE_DIR}/scripts/fetch-liblzma")

set(sources "${CMAKE_BINARY_DIR}/liblzma/src")
set(decoder
  common/alone_decoder.c
  common/common.c
  lz/lz_decoder.c
  lzma/lzma_decoder.c
)
set(encoder
  check/crc32_fast.c  # its table, for hashes of what was seen
  common/alone_encoder.c
  common/filter_common.c  # with the next, what memory an encoder takes
  common/filter_encoder.c
  lz/lz_encoder.c
  lz/lz_encoder_mf.c
  lzma/fastpos_table.c
  lzma/lzma_encoder.c
  lzma/lzma_encoder_optimum_fast.c
  lzma/lzma_encoder_optimum_normal.c
  lzma/lzma_encoder_presets.c
  rangecoder/price_table.c
)
list(TRANSFORM decoder PREPEND "${sources}/liblzma/")
list(TRANSFORM encoder PREPEND "${sources}/liblzma/")

add_library(quorvane_liblzma STATIC EXCLUDE_FROM_ALL ${decoder} ${encoder})
target_include_directories(quorvane_liblzma SYSTEM PUBLIC "${sources}/liblzma/api")
target_include_directories(quorvane_liblzma PRIVATE "${sources}/common")
foreach(folder IN ITEMS check common delta lz lzma rangecoder simple)
  target_include_directories(quorvane_liblzma PRIVATE "${sources}/liblzma/${folder}")
endforeach()
target_compile_definitions(quorvane_liblzma
  PUBLIC LZMA_API_STATIC
  PRIVATE HAVE_STDBOOL_H HAVE_STDINT_H HAVE_CHECK_CRC32 HAVE_DECODER_LZMA1 HAVE_ENCODER_LZMA1
          HAVE_MF_BT2 HAVE_MF_BT3 HAVE_MF_BT4 HAVE_MF_HC3 HAVE_MF_HC4  # presets differ in them
          TUKLIB_SYMBOL_PREFIX=lzma_
          # Words may begin at any address on both processors that there are builds for.
          TUKLIB_FAST_UNALIGNED_ACCESS
          NDEBUG)
# Optimised in every build: a packager without would take minutes where it takes seconds.
target_compile_options(quorvane_liblzma PRIVATE -std=gnu99 -w -O2 -fvisibility=hidden)
set_target_properties(quorvane_liblzma PROPERTIES UNITY_BUILD OFF)

# What reads others' bytes is guarded and watched as the project's own code is.
if(NOT QUORVANE_SANITIZE)
  target_compile_options(quorvane_liblzma PRIVATE
    -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong)
else()
  set_source_files_properties(${decoder} PROPERTIES COMPILE_OPTIONS
    "-fsanitize=${QUORVANE_SANITIZE};-fno-sanitize-recover=all;-fno-omit-frame-pointer;-g1;$<$<BOOL:${QUORVANE_FUZZ}>:-fsanitize=fuzzer-no-link>")
endif()
