#ifndef MUTANTS_H
#define MUTANTS_H

#include "good.h"

#include <QtCore/QStringList>

#include <memory>

/// The names of all mutants that differ from the good plugin in their code only.
QStringList mutantNames();

/// The driver of the mutant `name`, which begins with the number of the rule that finds it out; the
/// good one for any other name.
std::shared_ptr<DeviceDriver> makeDriver(const QString &name);

#endif
