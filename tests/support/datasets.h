// Datasets as text, so that a test compares all of one at a glance.
#pragma once

#include <sstream>
#include <utility>

#include "kem/dataset.h"
#include "support/support.h"

namespace kem::test {

// Files by name and content.
using Files = std::vector<std::pair<std::string, std::string>>;

// "Bruker BES3T 1/1 'Intensity' title: Intensity (G) f64\nField (G): 1 2 3\n= 10 20 30\n! note\n"
inline std::string Listing(const Dataset& d, std::size_t most = 8) {
  std::ostringstream text;
  text << d.format << ' ' << d.item << '/' << d.items << " '" << d.itemName << "' " << d.title << ": " << d.name
       << " (" << d.unit << ") " << NameOf(d.values.Type()) << (d.values.IsComplex() ? " complex" : "") << '\n';
  for (const Axis& axis : d.axes) {
    text << axis.name << " (" << axis.unit << ')' << (axis.IsLinear() ? ":" : " stored:");
    for (std::size_t k = 0; k < std::min(axis.Count(), most); ++k) text << ' ' << axis[k];
    text << (axis.Count() > most ? " ...\n" : "\n");
  }
  text << '=';
  for (std::size_t k = 0; k < std::min(d.values.Count(), most); ++k) {
    text << ' ' << d.values.Real(k);
    if (d.values.IsComplex()) text << std::showpos << d.values.Imaginary(k) << std::noshowpos << 'i';
  }
  text << (d.values.Count() > most ? " ...\n" : "\n");
  for (const Note& note : d.notes) text << "! " << note.text << '\n';
  return text.str();
}

// "[DSL fieldCtrl] CenterField = 3516.00 G {3516 G}\n"
inline std::string Parameters(const Dataset& d) {
  std::ostringstream text;
  for (const Parameter& p : d.parameters) {
    text << '[' << p.section << "] " << p.key << " = " << p.text;
    if (p.number) text << " {" << *p.number << (p.unit.empty() ? "" : " ") << p.unit << '}';
    text << '\n';
  }
  return text.str();
}

// Writes files into a folder of their own and runs a function on the path of the first.
template <class Run>
auto WithFiles(const Files& files, Run run) {
  const TempFolder folder;
  for (const auto& [name, bytes] : files) folder.Write(name, bytes);
  return run(folder.Path(files.front().first));
}

// The sentence of an error without the path before it; the path may differ, what is wrong may not.
template <class Run>
std::string Refusal(Run run) {
  try {
    run();
    return "nothing is wrong";
  } catch (const Error& error) {
    const std::string sentence = error.what();
    return sentence.substr(std::min(sentence.size(), sentence.find(": ") + 2));
  }
}

inline std::string OpenedAs(const Files& files, int item = 1) {
  return WithFiles(files, [item](const std::string& path) {
    std::string text;
    const std::string refusal = Refusal([&] { text = Listing(Open(path, item)); });
    if (!text.empty())
      OpenEach(path, [&](const Dataset& one) {
        if (one.item == item) CHECK(Listing(one) == text);
        return one.item < item;
      });
    return text.empty() ? "refused: " + refusal : text;
  });
}

}  // namespace kem::test
