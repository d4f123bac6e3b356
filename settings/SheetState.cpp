#include "settings/SheetState.h"

namespace kzp {

SheetState g_sheet;
PendingSettings g_pendingSettings;

}  // namespace kzp
