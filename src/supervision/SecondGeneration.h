#pragma once

#include "database/Connection.h"
#include "gui/Task.h"

/// A second generation of the copies on the backup server, bk2_glogin and so on. It is only ever replaced by
/// copies that were read back and found equal, so that at every moment, whatever is killed, one of the two
/// generations is whole. Raises database::Error.
namespace supervision {

/// Finishes what a kill has interrupted. To be called before the first generation is touched.
gui::Task<> MendSecondGeneration(database::Connection& destination);

/// Copies the first generation, which was found equal just now, over the second one.
gui::Task<> ReplaceSecondGeneration(database::Connection& destination);

} // namespace supervision
