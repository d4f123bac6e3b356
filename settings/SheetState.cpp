#include "settings/SheetState.h"

namespace kzp {

constinit SheetState g_sheet;
constinit PendingSettings g_pendingSettings;

}  // namespace kzp
