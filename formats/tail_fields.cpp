#include "formats/tail_fields.h"

#include "support/encoding/field_reader.h"

char* readTailField(FILE* stream, TailFieldNumber number) {
  return readString(stream, TAIL_FIELDS[number].name, TAIL_FIELDS[number].limit);
}
