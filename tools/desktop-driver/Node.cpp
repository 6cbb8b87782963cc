#include "Node.h"

#include <atspi/atspi.h>

#include <array>
#include <sstream>

#include "ChildProcess.h"

namespace desktop {
namespace {

std::shared_ptr<AtspiAccessible> own(AtspiAccessible* accessible) {
  return {accessible, [](AtspiAccessible* held) {
            if (held) g_object_unref(held);
          }};
}

// A failed call is an object that has gone; it then has no text.
std::string take(gchar* text, GError* error) {
  std::string result = text ? text : "";
  g_free(text);
  if (error) g_error_free(error);
  return result;
}

bool hasState(AtspiAccessible* accessible, AtspiStateType state) {
  AtspiStateSet* states = atspi_accessible_get_state_set(accessible);
  if (!states) return false;
  const bool held = atspi_state_set_contains(states, state);
  g_object_unref(states);
  return held;
}

Node::Rectangle extentsOf(AtspiAccessible* accessible, AtspiCoordType origin) {
  AtspiComponent* component = atspi_accessible_get_component_iface(accessible);
  if (!component) return {};
  AtspiRect* rectangle = atspi_component_get_extents(component, origin, nullptr);
  g_object_unref(component);
  if (!rectangle) return {};
  const Node::Rectangle result{rectangle->x, rectangle->y, rectangle->width, rectangle->height};
  g_free(rectangle);
  return result;
}

}  // namespace

std::string Node::role() const {
  GError* error = nullptr;
  return take(atspi_accessible_get_role_name(mAccessible.get(), &error), error);
}

std::string Node::name() const {
  GError* error = nullptr;
  return take(atspi_accessible_get_name(mAccessible.get(), &error), error);
}

std::string Node::description() const {
  GError* error = nullptr;
  return take(atspi_accessible_get_description(mAccessible.get(), &error), error);
}

std::string Node::text() const {
  AtspiText* text = atspi_accessible_get_text_iface(mAccessible.get());
  if (!text) return name();
  GError* error = nullptr;
  std::string value = take(atspi_text_get_text(text, 0, -1, &error), error);
  g_object_unref(text);
  return value;
}

bool Node::isShowing() const { return hasState(mAccessible.get(), ATSPI_STATE_SHOWING); }
bool Node::isEnabled() const { return hasState(mAccessible.get(), ATSPI_STATE_ENABLED); }
bool Node::isSelected() const { return hasState(mAccessible.get(), ATSPI_STATE_SELECTED); }
bool Node::isFocused() const { return hasState(mAccessible.get(), ATSPI_STATE_FOCUSED); }
bool Node::isExpanded() const { return hasState(mAccessible.get(), ATSPI_STATE_EXPANDED); }
bool Node::isActive() const { return hasState(mAccessible.get(), ATSPI_STATE_ACTIVE); }

Node::Rectangle Node::extents() const {
  return extentsOf(mAccessible.get(), ATSPI_COORD_TYPE_SCREEN);
}

Node::Rectangle Node::extentsInWindow() const {
  return extentsOf(mAccessible.get(), ATSPI_COORD_TYPE_WINDOW);
}

std::vector<Node> Node::children() const {
  std::vector<Node> nodes;
  const int count = atspi_accessible_get_child_count(mAccessible.get(), nullptr);
  for (int i = 0; i < count; ++i) {
    if (auto child = own(atspi_accessible_get_child_at_index(mAccessible.get(), i, nullptr))) {
      nodes.emplace_back(std::move(child));
    }
  }
  return nodes;
}

// Each question goes to the other program and back, so none is asked that need not be.
std::optional<Node> Node::firstShowing(const std::function<bool(const Node&)>& condition) const {
  if (!isShowing()) return std::nullopt;
  if (condition(*this)) return *this;
  const int count = atspi_accessible_get_child_count(mAccessible.get(), nullptr);
  for (int i = 0; i < count; ++i) {
    const auto child = own(atspi_accessible_get_child_at_index(mAccessible.get(), i, nullptr));
    if (!child) continue;
    if (auto found = Node(child).firstShowing(condition)) return found;
  }
  return std::nullopt;
}

std::vector<Node> Node::allShowing() const {
  std::vector<Node> nodes;
  firstShowing([&](const Node& node) {
    nodes.push_back(node);
    return false;
  });
  return nodes;
}

bool Node::activate() const {
  AtspiAction* action = atspi_accessible_get_action_iface(mAccessible.get());
  if (!action) return false;
  const bool done = atspi_action_do_action(action, 0, nullptr);
  g_object_unref(action);
  return done;
}

std::string Node::dump(int indent) const {
  std::ostringstream out;
  const Rectangle at = extents();
  out << std::string(static_cast<std::size_t>(indent), ' ') << '[' << role() << "] \"" << name()
      << "\" text=\"" << text() << "\" " << at.x << ',' << at.y << ' ' << at.width << 'x'
      << at.height << (isShowing() ? " showing" : "") << (isEnabled() ? " enabled" : "")
      << (isSelected() ? " selected" : "") << (isFocused() ? " focused" : "")
      << (isActive() ? " active" : "") << '\n';
  for (const Node& child : children()) out << child.dump(indent + 2);
  return out.str();
}

std::optional<Node> findApplication(int processId) {
  const auto screen = own(atspi_get_desktop(0));
  if (!screen) return std::nullopt;
  atspi_accessible_clear_cache(screen.get());
  const int count = atspi_accessible_get_child_count(screen.get(), nullptr);
  for (int i = 0; i < count; ++i) {
    auto child = own(atspi_accessible_get_child_at_index(screen.get(), i, nullptr));
    if (!child) continue;
    if (static_cast<int>(atspi_accessible_get_process_id(child.get(), nullptr)) == processId) {
      return Node(std::move(child));
    }
  }
  return std::nullopt;
}

std::optional<Node> findNode(int processId, const std::function<bool(const Node&)>& condition,
                             std::chrono::milliseconds limit) {
  std::optional<Node> found;
  waitUntil(
      [&] {
        if (const auto application = findApplication(processId)) {
          found = application->firstShowing(condition);
        }
        return found.has_value();
      },
      limit);
  return found;
}

std::optional<Node> findNode(int processId, const std::string& role, const std::string& name,
                             std::chrono::milliseconds limit) {
  return findNode(
      processId, [&](const Node& node) { return node.role() == role && node.name() == name; },
      limit);
}

}  // namespace desktop
