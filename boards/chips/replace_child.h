// Board code has its own kind of what a device of the library comes with.
#pragma once

#include <initializer_list>
#include <memory>

#include "framework/diag_obj.h"

// Puts `fresh` where the child of its name is. Throws CDiagException when there
// is none.
void ReplaceChild(CDiagObj& node, std::unique_ptr<CDiagObj> fresh);

// Takes the children of these names away, as far as there are any.
void RemoveChildren(CDiagObj& node, std::initializer_list<const char*> names);
