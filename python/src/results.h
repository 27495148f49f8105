#ifndef PYTHON_RESULTS_H
#define PYTHON_RESULTS_H

#include <pybind11/pybind11.h>

namespace qelpython {

/// Adds what a run has delivered, its forms and its way back from a document.
void bindResults(pybind11::module_ &module);

} // namespace qelpython

#endif
