#include "tests/macos/run/supply/registers.inc"

# Sends a message: finds the method and goes on to it with every argument as it is. A message to nil
# returns nothing in every register that a result can be in.

  .text

# objc_msgSend(receiver, selector, ...)
  .globl macrunSend
  .hidden macrunSend
macrunSend:
  .cfi_startproc
  test %rdi, %rdi
  jz 1f
  keep_registers
  call macrunFindMethod
  mov %rax, %r11
  restore_registers
  jmp *%r11
1: xor %eax, %eax
  xor %edx, %edx
  xorps %xmm0, %xmm0
  xorps %xmm1, %xmm1
  ret
  .cfi_endproc

# objc_msgSend_stret(result, receiver, selector, ...)
  .globl macrunSendForStructure
  .hidden macrunSendForStructure
macrunSendForStructure:
  .cfi_startproc
  test %rsi, %rsi
  jz 1f
  keep_registers
  mov %rsi, %rdi
  mov %rdx, %rsi
  call macrunFindMethod
  mov %rax, %r11
  restore_registers
  jmp *%r11
1: mov %rdi, %rax
  ret
  .cfi_endproc

# objc_msgSendSuper2({receiver, class}, selector, ...)
  .globl macrunSendToSuper
  .hidden macrunSendToSuper
macrunSendToSuper:
  .cfi_startproc
  keep_registers
  call macrunFindSuperMethod
  mov %rax, %r11
  restore_registers
  mov (%rdi), %rdi
  jmp *%r11
  .cfi_endproc

  .section .note.GNU-stack,"",@progbits
