// A DLL with the plug-in's entry points and nothing behind them: what loading any DLL costs.
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) {
    return TRUE;
}

extern "C" HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID, REFIID, void**) {
    return CLASS_E_CLASSNOTAVAILABLE;
}
