#pragma once

#include <QtGlobal>

#include <memory>

// How shapes are named and held, for those that need not know what shapes there are.

/// Names a shape for as long as the program runs: all states of one shape have the same, and no
/// other shape has it.
using ShapeId = quint64;

struct EditEntry;
/// Shared by histories and everything that shows them; the last of them frees the entry.
using EntryPtr = std::shared_ptr<const EditEntry>;
