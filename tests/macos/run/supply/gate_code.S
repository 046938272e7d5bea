#include "tests/macos/run/supply/registers.inc"

# What makeGate() copies, and is never run in this place: loads the gate's record, which it writes over the zeros, and goes on.
  .section .data.rel.ro, "aw"
  .globl macrunGateCode, macrunGateRecord, macrunGateCodeEnd
  .hidden macrunGateCode, macrunGateRecord, macrunGateCodeEnd
  .balign 16
macrunGateCode:
  mov macrunGateRecord(%rip), %r11
  jmp *macrunGateEntry(%rip)
macrunGateEntry:
  .quad macrunPassGate
macrunGateRecord:
  .quad 0
  .balign 16
macrunGateCodeEnd:

  .text
# %r11 is the record: the target, and whether the gate is open.
macrunPassGate:
  .cfi_startproc
  cmpq $0, 8(%r11)
  jne 1f
  keep_registers
  mov %r11, %rdi
  call macrunOpenGate
  mov 0xc0(%rsp), %r11
  restore_registers
1: jmp *(%r11)
  .cfi_endproc

  .section .note.GNU-stack,"",@progbits
