#ifndef QELWORKBENCH_SETTINGINPUTS_H
#define QELWORKBENCH_SETTINGINPUTS_H

#include "settingfield.h"

namespace qelworkbench {

/// The input that fits `setting`, one of those of `descriptor`, at its default: check boxes for
/// lists of choices, a list to choose from, a flag, a colour, a file, a text, wells that are picked
/// on a plate.
SettingField *makeSettingField(const qel::values::Setting &setting, const QVariant &descriptor,
                               QWidget *parent);

} // namespace qelworkbench

#endif
