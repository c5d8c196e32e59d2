# A program of 32 bits to be stopped in: it adds, tells by its exit code, and needs no library.
    .globl _start
    .text
_start:
    movl $0x80000001, %eax
    movl $2, %ebx
add_them:
    addl %ebx, %eax
    jz never
    xorl %edx, %edx
here:
    movl $1, %eax
    movl $42, %ebx
    int $0x80
never:
    hlt
