// The files that a command line stands for: named, matched by a pattern, or found in a folder.
#pragma once

#include <CLI/CLI.hpp>
#include <cstddef>
#include <string>
#include <vector>

namespace kem::tool {

struct FileList {
  std::vector<std::string> names;
  bool recursive = false;

  // Whether it can only be one file.
  bool IsOne() const;
};

// The arguments FILE... and what goes with them.
void AddFiles(CLI::App& app, FileList& files);

struct File {
  std::string name;
  bool found = false;       // in a folder: it need not be a data file
  std::string folder = {};  // that it was found in by name or pattern; the output keeps what lies below
};

struct Listing {
  std::vector<File> files;              // each pair once
  std::size_t partners = 0;             // that belong to files of the list
  std::vector<std::string> empty = {};  // folders in which nothing lies
};

Listing ListOf(const FileList& files);

// Whether a name stands for the files that match it, because it has *, ? or [ in it and none bears it.
bool IsPattern(const std::string& name);

// Whether a name matches a pattern of *, which stands for any characters, ? for one, and [a-z] for one of them.
bool Matches(std::string_view pattern, std::string_view name);

}  // namespace kem::tool
