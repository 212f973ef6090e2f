// Ends its process while threads of it are inside the stand-ins.
#include <windows.h>

extern "C" __declspec(dllimport) void LeaveThreadsInside();

int main() {
    LeaveThreadsInside();
    ExitProcess(7);
}
