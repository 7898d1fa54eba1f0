// The members of generic names.
#include "declarations/interfaces.h"

#include "declarations/scopes.h"
#include "il/entries.h"

#include <unordered_set>

namespace zf90 {

namespace {

// Of the interface that was added to last, so that no list is searched for each new member.
struct {
    interface *generic;
    object_list_member *last;
    std::unordered_set<const object *> routines;
} members;

void turn_to(interface *generic) {
    members.generic = generic;
    members.last = nullptr;
    members.routines.clear();
    for (object_list_member *m = generic->routine_prototype_list; m; m = m->next) {
        members.last = m;
        members.routines.insert(m->object);
    }
}

} // namespace

void add_to_interface(object *routine, std::int32_t depth) {
    routine->source_corresp.referenced = true;
    interface *generic = scope_stack[depth].current_interface;
    if (!generic) {
        return;
    }
    if (generic != members.generic || (members.last && members.last->next)) {
        turn_to(generic);
    }
    if (!members.routines.insert(routine).second) {
        return;
    }
    object_list_member *member = new_object_list_member();
    member->object = routine;
    (members.last ? members.last->next : generic->routine_prototype_list) = member;
    members.last = member;
}

} // namespace zf90
