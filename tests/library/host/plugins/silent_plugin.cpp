// A library that is no plug-in: it registers nothing. With NEEDS_ANOTHER it needs a library,
// itself.
#ifdef NEEDS_ANOTHER
extern "C" __declspec(dllimport) void DoNothing();
extern "C" __declspec(dllexport) void DoAsLittle() { DoNothing(); }
#else
extern "C" __declspec(dllexport) void DoNothing() {}
#endif
