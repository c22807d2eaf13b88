// The items of files that hold several.
#pragma once

#include <istream>
#include <vector>

#include "kem.h"

namespace kem::load {

using ItemList = std::vector<KemItem>;

// These take the items that a file announces, all of them like the first, store what differs, and remove those that
// begin behind the end of the file.
void ListNXY(std::istream& in, ItemList& items);
void ListOMA(std::istream& in, ItemList& items);
void ListIccdCurves(std::istream& in, ItemList& items);
void ListDilorSeries(std::istream& in, ItemList& items);

}  // namespace kem::load
