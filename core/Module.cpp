#include "core/Module.h"

namespace kzp {

HINSTANCE g_hInstance = nullptr;
std::atomic<LONG> g_cServerLocks = 0;
std::atomic<IPrintOemDriverUI*> g_pOemDriverUI = nullptr;

}  // namespace kzp
