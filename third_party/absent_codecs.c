// Ways of packing a TIFF file that are left out of our copy of libtiff: the other platform's imaging component
// reads none of them, and each is one more reader of foreign bytes in every host.
struct tiff;
#define ABSENT(name)                                                                                         \
    int name(struct tiff* pTiff, int iScheme);                                                               \
    int name(struct tiff* pTiff, int iScheme) {                                                              \
        (void)pTiff;                                                                                         \
        (void)iScheme;                                                                                       \
        return 0;                                                                                            \
    }

ABSENT(TIFFInitJBIG)
ABSENT(TIFFInitLERC)
ABSENT(TIFFInitLZMA)
ABSENT(TIFFInitNeXT)
ABSENT(TIFFInitOJPEG)
ABSENT(TIFFInitPixarLog)
ABSENT(TIFFInitSGILog)
ABSENT(TIFFInitThunderScan)
ABSENT(TIFFInitWebP)
ABSENT(TIFFInitZSTD)
