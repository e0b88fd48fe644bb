#pragma once

#include <QString>

#include <utility>
#include <vector>

class XObList;

/// What is told of several selected objects together, names and values; a heading has a null value:
/// how many there are of which kind, then the attributes that all of them have, with the value where it
/// is the same. Of very many, the attributes of the first thousand are compared, and that is said.
std::vector<std::pair<QString, QString>> XfnSelectionReport(const XObList& selection);
