#pragma once

#include <xcb/xcb.h>

#include <map>
#include <string>

namespace kivra::x11 {

/// Atoms of one connection by name and names by atom, each asked for once.
class Atoms {
 public:
  explicit Atoms(xcb_connection_t* connection) : connection_(connection) {}

  /// XCB_ATOM_NONE when the server does not answer.
  xcb_atom_t atom(const std::string& name);

  /// Empty when there is no such atom.
  std::string name(xcb_atom_t atom);

 private:
  xcb_connection_t* connection_;
  std::map<std::string, xcb_atom_t> atoms_;
  std::map<xcb_atom_t, std::string> names_;
};

}  // namespace kivra::x11
