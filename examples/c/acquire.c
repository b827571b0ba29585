/* Acquires pictures through the exported functions of an applet library and writes the last one as PGM.
 * usage: acquire APPLET PICTURES FILE.pgm */
#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "fabrix/applet.h"
#include "fabrix/tavo_hw.h"

enum { kWidth = 640, kHeight = 480, kBuffers = 4, kTimeoutSeconds = 5 };
static const size_t kBytes = (size_t)kWidth * kHeight;

static Fg_Master* (*openGrabber)(FgDevice*, int*, int);
static int (*info)(enum AppletInfos, int, int, void*, const void**);
static int (*freeGrabber)(Fg_Struct*);
static int (*setParameter)(Fg_Struct*, int, void*, int, enum FgParamTypes);
static int (*getParameter)(Fg_Struct*, int, void*, int, enum FgParamTypes);
static int (*acquire)(Fg_Struct*, int, frameindex_t, int, dma_mem*);
static frameindex_t (*waitForPicture)(Fg_Struct*, frameindex_t, int, int, dma_mem*);
static int (*stopAcquire)(Fg_Struct*, int, dma_mem*, int);
static dma_mem* (*newBuffers)(FgDevice*, size_t, frameindex_t);
static int (*addBuffer)(FgDevice*, dma_mem*, void*, size_t, frameindex_t);
static int (*removeBuffer)(FgDevice*, dma_mem*, frameindex_t);
static int (*freeBuffers)(FgDevice*, dma_mem*);

/* The C standard has no cast from an object pointer to a function pointer; the bytes are the same. */
static int resolve(void* library, const char* name, void* function) {
    void* address = dlsym(library, name);
    if (address == NULL) fprintf(stderr, "the library lacks %s\n", name);
    memcpy(function, &address, sizeof address);
    return address != NULL;
}

static int resolveAll(void* library) {
    return resolve(library, "Std_entry", &openGrabber) && resolve(library, "Info", &info) &&
           resolve(library, "Fg_FreeGrabber", &freeGrabber) &&
           resolve(library, "Fg_setParameterWithType", &setParameter) &&
           resolve(library, "Fg_getParameterWithType", &getParameter) && resolve(library, "Fg_AcquireEx", &acquire) &&
           resolve(library, "Fg_getLastPicNumberBlockingEx", &waitForPicture) &&
           resolve(library, "Fg_stopAcquireEx", &stopAcquire) &&
           resolve(library, "TavoGetVirtualUserBuffer", &newBuffers) &&
           resolve(library, "TavoAddUserBuffer", &addBuffer) && resolve(library, "TavoDelUserBuffer", &removeBuffer) &&
           resolve(library, "TavoFreeVirtualUserBuffer", &freeBuffers);
}

static int refused(const char* what, int code) {
    fprintf(stderr, "%s: refused with code %d\n", what, code);
    return EXIT_FAILURE;
}

static int setWindow(Fg_Struct* grabber) {
    int32_t width = kWidth, height = kHeight, read = 0;
    int code = setParameter(grabber, FG_WIDTH, &width, 0, FG_PARAM_TYPE_INT32_T);
    if (code >= 0) code = setParameter(grabber, FG_HEIGHT, &height, 0, FG_PARAM_TYPE_INT32_T);
    if (code >= 0) code = getParameter(grabber, FG_WIDTH, &read, 0, FG_PARAM_TYPE_INT32_T);
    if (code < 0) return refused("the window", code);
    printf("window: %d x %d\n", (int)read, (int)height);
    return EXIT_SUCCESS;
}

static int writePgm(const char* path, const uint8_t* pixels) {
    FILE* file = fopen(path, "wb");
    int isWritten = 0;
    if (file != NULL) {
        isWritten = fprintf(file, "P5\n%d %d\n255\n", kWidth, kHeight) > 0 && fwrite(pixels, kBytes, 1, file) == 1;
        isWritten = fclose(file) == 0 && isWritten;
    }
    if (!isWritten) perror(path);
    return isWritten ? EXIT_SUCCESS : EXIT_FAILURE;
}

static int acquireInto(Fg_Struct* grabber, dma_mem* buffers, const uint8_t* memory, frameindex_t pictures,
                       const char* path) {
    int code = acquire(grabber, 0, pictures, 1, buffers);
    if (code < 0) return refused("the start", code);
    frameindex_t last = waitForPicture(grabber, pictures, 0, kTimeoutSeconds, buffers);
    code = stopAcquire(grabber, 0, buffers, 1);
    if (last < 0) return refused("the wait", last);
    if (code < 0) return refused("the stop", code);
    printf("pictures: %d\n", (int)last);
    return writePgm(path, memory + kBytes * (size_t)((last - 1) % kBuffers));
}

static int runWithBuffers(Fg_Struct* grabber, FgDevice* device, frameindex_t pictures, const char* path) {
    int outcome = EXIT_FAILURE;
    frameindex_t added = 0;
    uint8_t* memory = calloc(kBuffers, kBytes);
    dma_mem* buffers = memory == NULL ? NULL : newBuffers(device, kBuffers * kBytes, kBuffers);
    if (buffers != NULL) {
        while (added < kBuffers && addBuffer(device, buffers, memory + kBytes * (size_t)added, kBytes, added) >= 0) {
            ++added;
        }
        if (added == kBuffers) outcome = acquireInto(grabber, buffers, memory, pictures, path);
        while (added > 0) removeBuffer(device, buffers, --added);
        freeBuffers(device, buffers);
    }
    free(memory);
    return outcome;
}

int main(int argc, char** argv) {
    if (argc != 4 || strtol(argv[2], NULL, 10) < 1 || strtol(argv[2], NULL, 10) > INT32_MAX) {
        fprintf(stderr, "usage: acquire APPLET PICTURES FILE.pgm\n");
        return 2;
    }
    void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (library == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        return EXIT_FAILURE;
    }
    if (!resolveAll(library)) return EXIT_FAILURE;

    const void* name = NULL;
    info(GET_INFO_FRIENDLY_NAME, 0, 0, NULL, &name);
    printf("applet: %s\n", name == NULL ? "without a name" : (const char*)name);

    /* On hardware the handle comes from the board's own library; the software board takes any address as board 0. */
    static uint64_t board;
    FgDevice* device = (FgDevice*)&board;
    int code = 0;
    Fg_Struct grabber = {openGrabber(device, &code, 0)};
    if (grabber.Master == NULL) return refused("the board", code);

    int outcome = setWindow(&grabber);
    if (outcome == EXIT_SUCCESS) {
        outcome = runWithBuffers(&grabber, device, (frameindex_t)strtol(argv[2], NULL, 10), argv[3]);
    }
    freeGrabber(&grabber);
    return outcome;
}
