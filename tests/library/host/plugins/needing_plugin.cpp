// A library that needs another one, silent_plugin.dll.
extern "C" __declspec(dllimport) void DoNothing();
extern "C" __declspec(dllexport) void DoAsLittle() { DoNothing(); }
