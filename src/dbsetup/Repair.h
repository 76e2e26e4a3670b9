#pragma once

#include "database/Error.h"
#include "dbsetup/SetUpServer.h"

namespace dbsetup {

/// Asked once, when the server has rejected the old form of a create statement: true to go on with the form
/// that servers of today know.
using AllowEngineForm = std::function<gui::Task<bool>(const database::Error& rejection)>;

/// Makes what is missing of the three databases and their tables on a server that is logged in to. False when
/// `allowEngineForm` declined: nothing has been sent since, and what was made before stays. Raises
/// database::Error; what was made before stays then too.
gui::Task<bool> Repair(SetUpServer& server, AllowEngineForm allowEngineForm);

/// Drops the three databases with everything in them. One that cannot be dropped, for instance because it is
/// not there, does not keep the others; the first database::Error is raised at the end.
gui::Task<> DropDatabases(SetUpServer& server);

} // namespace dbsetup
