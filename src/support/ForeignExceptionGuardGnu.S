/* int RunStoppingForeignExceptions(void (*function)(void* context), void* context)

   GCC has no __try and __except, so the frame that Windows' own handler understands is written out: one scope, from the
   call to just behind it, whose filter accepts only the exception code of Visual C++'s C++ exceptions. */

    .set VISUAL_CPP_EXCEPTION, 0xE06D7363

    .text
    .globl  RunStoppingForeignExceptions
    .def    RunStoppingForeignExceptions; .scl 2; .type 32; .endef
    .seh_proc RunStoppingForeignExceptions
RunStoppingForeignExceptions:
    subq    $40, %rsp                   /* 32 bytes for the callee's registers, 8 to align the stack */
    .seh_stackalloc 40
    .seh_endprologue
.Lscope_begin:
    movq    %rcx, %rax
    movq    %rdx, %rcx
    call    *%rax
    nop                                 /* the return address must lie inside the scope */
.Lscope_end:
    xorl    %eax, %eax
.Lreturn:
    addq    $40, %rsp
    ret
.Lstopped:                              /* Windows has unwound to this frame and goes on here */
    movl    $1, %eax
    jmp     .Lreturn
    .seh_handler __C_specific_handler, @except, @unwind
    .seh_handlerdata
    .long   1                           /* one scope */
    .rva    .Lscope_begin, .Lscope_end, .Lfilter, .Lstopped
    .text
    .seh_endproc

/* int filter(EXCEPTION_POINTERS* pointers, void* frame): 1 takes the exception, 0 lets the search go on */
    .def    .Lfilter; .scl 3; .type 32; .endef
    .seh_proc .Lfilter
.Lfilter:
    .seh_endprologue
    movq    (%rcx), %rax                /* pointers->ExceptionRecord */
    cmpl    $VISUAL_CPP_EXCEPTION, (%rax)
    sete    %al
    movzbl  %al, %eax
    ret
    .seh_endproc
