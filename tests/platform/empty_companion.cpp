// A companion module without any of the functions that are looked for.
extern "C" __attribute__((visibility("default"))) int InvokeAnotherDlg() { return 1; }
