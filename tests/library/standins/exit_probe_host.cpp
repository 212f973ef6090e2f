// Ends its process while threads of it are inside the stand-ins.
#include <windows.h>

extern "C" __declspec(dllimport) void ExitProbe_LeaveThreadsInside();

int main() {
    ExitProbe_LeaveThreadsInside();
    ExitProcess(7);
}
