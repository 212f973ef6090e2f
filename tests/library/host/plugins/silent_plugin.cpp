// A library that is no plug-in: it registers nothing.
extern "C" __declspec(dllexport) void DoNothing() {}
