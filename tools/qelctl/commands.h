#ifndef QELCTL_COMMANDS_H
#define QELCTL_COMMANDS_H

#include "commandline.h"
#include "startup.h"

namespace qelctl {

/// The commands, each in the file of its name.
extern const Command checkCommand;
extern const Command connectCommand;
extern const Command disconnectCommand;
extern const Command doctorCommand;
extern const Command driversCommand;
extern const Command listCommand;
extern const Command resultsCommand;
extern const Command serversCommand;
extern const Command showCommand;
extern const Command newDriverCommand;
extern const Command runCommand;
extern const Command watchCommand;

/// Says, a line for each, which servers of this user are away and why.
void tellAbsences();

/// Whether this process is one that the command "doctor" has started to load plugins in, and what
/// it does instead of its usual work: its standard streams lead to the one that waits for its
/// answers.
bool isLoadTrial(int argc, char *const *argv);
int runLoadTrial(int argc, char **argv);

} // namespace qelctl

#endif
