// The items of files that hold several.
#pragma once

#include <istream>
#include <vector>

#include "kem.h"
#include "record/findings.h"

namespace kem::load {

using ItemList = std::vector<KemItem>;

// These take the items that a file announces, all of them like the first, store what differs, and remove those that
// begin behind the end of the file.
void ListNXY(std::istream& in, ItemList& items);
void ListOMA(std::istream& in, ItemList& items);
void ListIccdCurves(std::istream& in, ItemList& items);
void ListDilorSeries(std::istream& in, ItemList& items);

// Where an item of a series begins, counted from 0: from header to header, at best from the item read last. Where
// the file ends before it, the place at which a header is missing.
template <class Header>
std::streamoff PlaceOf(std::istream& in, int item, std::streamoff first) {
  record::Place none;
  record::Place& place = record::Found().place ? *record::Found().place : none;
  if (place.at < first || place.item > item) place = {0, first};
  for (; place.item < item; ++place.item) {
    const Header header(in, place.at);
    if (!header.IsThere()) break;
    place.at += header.Size();
  }
  return place.at;
}

}  // namespace kem::load
