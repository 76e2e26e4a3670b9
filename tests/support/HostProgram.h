#pragma once

#include <string>

namespace support {

/// Gives the programs of MySQL that an operator has on Windows a place in `folder`: mysql, mysqldump,
/// mysqlcheck, mysqladmin and net are this test program under another name, which runs the ones of this
/// computer, or stops and starts the private server.
void MakeHostPrograms(const std::string& folder);

/// Runs the program by whose name this one was started; false when it was started by its own.
bool RunAsHostProgram(int count, char** arguments, int& status);

/// Runs a batch file in `folder`, where it also finds those programs, and returns its exit status.
int RunBatch(const std::string& folder, const std::string& batch);

} // namespace support
