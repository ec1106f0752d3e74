// A companion module without any of the functions that are looked for.
#if defined(_WIN32)
#define HDI_TEST_EXPORT __declspec(dllexport)
#else
#define HDI_TEST_EXPORT __attribute__((visibility("default")))
#endif

extern "C" HDI_TEST_EXPORT int InvokeAnotherDlg() { return 1; }
