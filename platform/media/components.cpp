#include "media/components.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <vector>

#include "foundation/guard.h"
#include "media/builtin_components.h"
#include "media/component_instance.h"

namespace {

struct Registry {
  std::mutex lock;
  std::vector<const ComponentTable *> tables;  // in the order of registration
};

Registry &registry() {
  static Registry shared;
  return shared;
}

// Calls visit with each table, the last registered first, the built-in ones after them, until it says true.
template <class Visit>
void visitTables(Visit visit) noexcept {
  Registry &shared = registry();
  const std::lock_guard guard(shared.lock);
  for (auto table = shared.tables.rbegin(); table != shared.tables.rend(); ++table) {
    if (visit(**table)) return;
  }
  for (const ComponentTable &table : media::builtinComponents()) {
    if (visit(table)) return;
  }
}

}  // namespace

namespace media {

const ComponentTable *findComponent(OSType type, OSType subType) noexcept {
  const ComponentTable *found = nullptr;
  visitTables([&](const ComponentTable &table) {
    if (table.type != type || table.subType != subType) return false;
    found = &table;
    return true;
  });
  return found;
}

const ComponentTable *findImporterFor(const uint8_t *head, size_t size) noexcept {
  const ComponentTable *best = nullptr;
  int bestScore = 0;
  visitTables([&](const ComponentTable &table) {
    if (table.type != GraphicsImporterComponentType || !table.validate) return false;
    if (const int score = table.validate(&table, head, size); score > bestScore) {
      best = &table;
      bestScore = score;
    }
    return false;
  });
  return best;
}

OSErr openComponent(const ComponentTable *table, ComponentInstance *instance) noexcept {
  *instance = new (std::nothrow) ComponentInstanceRecord;
  if (!*instance) return memFullErr;
  (*instance)->table = table;
  const OSErr error = table->open ? table->open(table, &(*instance)->self) : OSErr{noErr};
  if (error == noErr) return noErr;
  delete *instance;
  *instance = nullptr;
  return error;
}

bool isOpen(ComponentInstance instance, OSType type) noexcept {
  return instance && instance->table->type == type;
}

}  // namespace media

OSErr OpenADefaultComponent(OSType type, OSType subType, ComponentInstance *instance) {
  if (!instance) return paramErr;
  *instance = nullptr;
  const ComponentTable *table = media::findComponent(type, subType);
  return table ? media::openComponent(table, instance) : OSErr{cantFindHandler};
}

OSErr CloseComponent(ComponentInstance instance) {
  if (!instance) return badComponentInstance;
  if (instance->table->close) instance->table->close(instance->self);
  if (instance->ownedData) DisposeHandle(instance->ownedData);
  delete instance;
  return noErr;
}

OSErr GetComponentInfo(Component component, ComponentDescription *description, Handle, Handle, Handle) {
  if (!component) return badComponentInstance;
  if (!description) return paramErr;
  *description = {};
  description->componentType = component->table->type;
  description->componentSubType = component->table->subType;
  return noErr;
}

OSErr RegisterComponentTable(const ComponentTable *table) {
  if (!table) return paramErr;
  return cf::guardedOr(OSErr{memFullErr}, [&] {
    Registry &shared = registry();
    const std::lock_guard guard(shared.lock);
    shared.tables.push_back(table);
    return OSErr{noErr};
  });
}

OSErr UnregisterComponentTable(const ComponentTable *table) {
  Registry &shared = registry();
  const std::lock_guard guard(shared.lock);
  const auto last = std::find(shared.tables.rbegin(), shared.tables.rend(), table);
  if (last == shared.tables.rend()) return cantFindHandler;
  shared.tables.erase(std::next(last).base());
  return noErr;
}
