#include "support/SystemExceptions.h"

// A frame in assembler, for the compilers have no words for one. Its handler is the platform's own, whose
// table says: whatever leaves the call between the first two labels is taken (1), and the frame goes on at
// the third. By then stack and saved registers are what they were before the call.
asm(R"(
    .text
    .globl kzp_call_in_frame
    .def kzp_call_in_frame
    .scl 2
    .type 32
    .endef
    .seh_proc kzp_call_in_frame
kzp_call_in_frame:
    subq $40, %rsp
    .seh_stackalloc 40
    .seh_endprologue
    .seh_handler __C_specific_handler, @except
    .seh_handlerdata
    .long 1
    .rva kzp_call, kzp_called
    .long 1
    .rva kzp_excepted
    .text
    movq %rcx, %rax
    movq %rdx, %rcx
kzp_call:
    callq *%rax
    nop
kzp_called:
    movl $1, %eax
    addq $40, %rsp
    retq
kzp_excepted:
    xorl %eax, %eax
    addq $40, %rsp
    retq
    .seh_endproc
)");

extern "C" int kzp_call_in_frame(void (*body)(void*), void* argument);

namespace kzp {

bool ReturnsNormally(void (*body)(void*), void* argument) {
    return kzp_call_in_frame(body, argument) != 0;
}

}  // namespace kzp
