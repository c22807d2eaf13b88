// The formats that records can be written in, and what each can hold.
#pragma once

#include <span>
#include <string>

#include "kem.h"
#include "problem.h"

namespace kem::tool {

struct Format {
  const char* name;  // the extension of its files
  const char* what;
  bool curves;
  bool grids;
  int mostPoints;  // along an axis; 0 for any number
  bool checked;    // what was written is read back, which costs too much elsewhere
};

std::span<const Format> Formats();

// In capitals, too; null when there is none.
const Format* FormatNamed(const std::string& name);
// "prn, csv, ..."
std::string FormatNames();

// Why a format cannot hold a record.
Problem CannotHold(const Format& format, const PrnType& record);

// Gives the record of a dataset its title as name where a format writes the name and reads it back as title.
void NameByTitle(PrnType& record, const Format& format, std::string title);

// Writes a record to an empty file.
Problem WriteRecord(PrnType& record, const Format& format, const std::string& name);

}  // namespace kem::tool
