// pwhost has no C run-time start-up code of its own (it links only the
// system's msvcrt.dll): this entry point fetches the arguments the way the
// start-up code would and turns a crash into a one-line report.
#include "msvc_freestanding.h"

int main(int argc, char** argv);

extern "C" {
typedef struct {
    int newmode;
} StartupInfo;
int __cdecl __getmainargs(int* argc, char*** argv, char*** env, int wildcard, StartupInfo* info);

// Referenced by any code that uses floating point.
int _fltused = 0;

// The cross toolchain's stdio.h reaches stdin, stdout and stderr through this
// newer run-time function; msvcrt.dll has the older array behind __iob_func.
FILE* __cdecl MsvcrtStreams(void) __asm__("___iob_func");
FILE* __cdecl __acrt_iob_func(unsigned index) { return MsvcrtStreams() + index; }
}

static LONG WINAPI ReportCrash(EXCEPTION_POINTERS* info) {
    fprintf(stderr, "pwhost: crashed with exception 0x%08lx at %p\n", info->ExceptionRecord->ExceptionCode,
            info->ExceptionRecord->ExceptionAddress);
    fflush(stderr);
    ExitProcess(70);
    return EXCEPTION_EXECUTE_HANDLER;
}

extern "C" void mainCRTStartup() {
    SetUnhandledExceptionFilter(ReportCrash);
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    int argc = 0;
    char** argv = nullptr;
    char** env = nullptr;
    StartupInfo startup = {0};
    __getmainargs(&argc, &argv, &env, 0, &startup);
    int code = main(argc, argv);
    fflush(stdout);
    fflush(stderr);
    exit(code);
}
