#pragma once

/// Sends a statement to the playground's database server as its administrator, over a connection that stays.
void TellDatabase(const char* statement);
