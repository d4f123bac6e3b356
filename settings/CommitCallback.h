// What happens when the user presses OK or Apply, and when the driver's page first comes to the front.
#pragma once

#include "driverkit/printoem.h"

namespace kzp {

// The OEMCUIPCALLBACK that CommonUIProp registers; called on the sheet's thread for every event of the
// driver's own page, with the sheet's parameter block. Answers a CPSUICB_ACTION_* value; NO_APPLY_EXIT, which
// only a commit answers, keeps the sheet open.
LONG APIENTRY CommitCallback(PCPSUICBPARAM cbparam, POEMCUIPPARAM param);

}  // namespace kzp
