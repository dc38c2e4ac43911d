/// Something to export: without it the linker makes no library.
extern "C" __declspec(dllexport) int Planted();

int Planted() { return 1; }
