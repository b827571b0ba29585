// The bytes of the embedded files. The assembler takes them in whole: as C++ tables they would take far longer.

#if __SIZEOF_SIZE_T__ == 8
#define SIZE_VALUE ".quad "
#else
#define SIZE_VALUE ".long "
#endif

#define EMBED(data, size, file)                                                                             \
    __asm__(                                                                                                \
        ".pushsection .rodata\n"                                                                            \
        ".balign 16\n"                                                                                      \
        ".globl " #data "\n.hidden " #data "\n.type " #data ", %object\n" #data ":\n.incbin \"" file        \
        "\"\n"                                                                                              \
        ".L" #data                                                                                          \
        "_end:\n"                                                                                           \
        ".size " #data ", .L" #data "_end - " #data                                                         \
        "\n"                                                                                                \
        ".balign 8\n"                                                                                       \
        ".globl " #size "\n.hidden " #size "\n.type " #size ", %object\n" #size ":\n" SIZE_VALUE ".L" #data \
        "_end - " #data                                                                                     \
        "\n"                                                                                                \
        ".size " #size ", . - " #size                                                                       \
        "\n"                                                                                                \
        ".popsection\n")

EMBED(rawHapData, rawHapDataSize, QUILLON_DESIGN_IMAGE);
EMBED(appletIconData, appletIconSize, QUILLON_ICON);
