#include "platform/x11/atoms.h"

#include "platform/x11/xcb_pointer.h"

namespace kivra::x11 {

xcb_atom_t Atoms::atom(const std::string& name) {
  if (const auto known = atoms_.find(name); known != atoms_.end()) return known->second;
  const auto cookie =
      xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const XcbPointer<xcb_intern_atom_reply_t> reply(
      xcb_intern_atom_reply(connection_, cookie, nullptr));
  if (!reply) return XCB_ATOM_NONE;
  names_[reply->atom] = name;
  return atoms_[name] = reply->atom;
}

std::string Atoms::name(xcb_atom_t atom) {
  if (const auto known = names_.find(atom); known != names_.end()) return known->second;
  const XcbPointer<xcb_get_atom_name_reply_t> reply(
      xcb_get_atom_name_reply(connection_, xcb_get_atom_name(connection_, atom), nullptr));
  if (!reply) return "";
  std::string name(xcb_get_atom_name_name(reply.get()),
                   static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())));
  atoms_[name] = atom;
  return names_[atom] = name;
}

}  // namespace kivra::x11
