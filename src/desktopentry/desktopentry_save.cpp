// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "desktopentry/desktopentry_p.h"
#include "desktopentry/entryfields_p.h"
#include "desktopentry/entryvalue_p.h"

#include "core/diag_p.h"
#include "core/ini_p.h"

using Vyx::detail::ActionField;
using Vyx::detail::EntryField;
using Vyx::detail::EntryFieldKind;
using Vyx::detail::IniDocument;
using Vyx::detail::kActionFields;
using Vyx::detail::kEntryFields;

namespace {

// Writes one group, keeping the overall result: a refused key makes it
// false, but the others are still written.
class GroupWriter {
public:
    GroupWriter(IniDocument& ini, std::string group, const VyxDesktopEntryPrivate& d, bool saveEmpty)
        : m_ini(ini), m_group(std::move(group)), m_d(d), m_saveEmpty(saveEmpty)
    { }

    void text(const char* key, const std::string& value)
    {
        if (!value.empty() || m_saveEmpty)
            put(key, value);
    }
    // Our own translation, under the first language of the list.
    void translation(const char* key, const std::string& value)
    {
        if (m_d.hasLocale())
            text(m_d.localized(key).c_str(), value);
    }
    void list(const char* key, const std::vector<std::string>& value)
    {
        if (!value.empty() || m_saveEmpty)
            put(key, Vyx::join(value, ";"));
    }
    void listTranslation(const char* key, const std::vector<std::string>& value)
    {
        if (m_d.hasLocale())
            list(m_d.localized(key).c_str(), value);
    }
    void flag(const char* key, const OptionalBool& value)
    {
        if (value.present || m_saveEmpty)
            put(key, value.value ? "true" : "false");
    }
    void put(const char* key, const std::string& value)
    {
        // A name that would not read back as itself would make the file say
        // something else than the entry (a key or group of the writer's
        // choosing): nothing is written then.
        if (!IniDocument::isWritableGroup(m_group.c_str())) {
            refuse(m_group);
            return;
        }
        if (!IniDocument::isWritableKey(key)) {
            refuse(key);
            return;
        }
        if (!m_ini.set(m_group.c_str(), key, Vyx::detail::encodeEntryValue(value)))
            m_ok = false;
    }
    bool ok() const { return m_ok; }
    // The first group name or key that cannot be written, or "".
    const std::string& refused() const { return m_refused; }

private:
    IniDocument& m_ini;
    std::string m_group;
    const VyxDesktopEntryPrivate& m_d;
    bool m_saveEmpty;
    bool m_ok = true;
    std::string m_refused;

    void refuse(const std::string& name)
    {
        m_ok = false;
        if (m_refused.empty())
            m_refused = name.empty() ? std::string("(empty)") : name;
    }
};

// Actions without an id or an Exec are neither listed nor written.
bool isSavable(const VyxDesktopAction& action)
{
    return !action.id().empty() && !action.exec().empty();
}

// The main group's own keys, in table order.
void writeFields(GroupWriter& entry, const VyxDesktopEntryPrivate& d, bool saveEmpty)
{
    for (const EntryField& field : kEntryFields) {
        if ((field.rules & EntryField::kLinkOnly) && d.type != "Link")
            continue;
        switch (field.kind) {
        case EntryFieldKind::Text:
            entry.text(field.key, d.*field.text);
            if (field.localText)
                entry.translation(field.key, d.*field.localText);
            break;
        case EntryFieldKind::List:
            entry.list(field.key, d.*field.list);
            if (field.localList)
                entry.listTranslation(field.key, d.*field.localList);
            break;
        case EntryFieldKind::Flag:
            entry.flag(field.key, d.*field.flag);
            break;
        case EntryFieldKind::Actions:
            if (!d.actions.empty() || saveEmpty) {
                std::string ids;
                for (const VyxDesktopAction& action : d.actions) {
                    if (isSavable(action))
                        ids += action.id() + ";";  // unlike other lists, ends with ";"
                }
                entry.put(field.key, ids);
            }
            break;
        }
    }
}

}  // namespace

bool VyxDesktopEntryPrivate::save(bool saveEmpty)
{
    if (filePath.empty())
        return false;
    // A new document: what the model does not hold (comments, other groups)
    // is not carried over.
    IniDocument ini;
    GroupWriter entry(ini, "Desktop Entry", *this, saveEmpty);
    writeFields(entry, *this, saveEmpty);
    for (const auto& unknown : unknownList())
        entry.put(unknown.first.c_str(), unknown.second);
    bool ok = entry.ok();
    std::string refused = entry.refused();

    if (!actions.empty() || saveEmpty) {
        for (const VyxDesktopAction& action : actions) {
            if (!isSavable(action))
                continue;
            GroupWriter group(ini, Vyx::concat("Desktop Action ", action.id()), *this, saveEmpty);
            for (const ActionField& field : kActionFields) {
                if (field.text)
                    group.text(field.key, (action.*field.text)());
                else
                    group.list(field.key, (action.*field.list)());
                if (field.localText)
                    group.translation(field.key, (action.*field.localText)());
            }
            ok = group.ok() && ok;
            if (refused.empty())
                refused = group.refused();
        }
    }

    if (!refused.empty()) {
        // Shown escaped, so that the message stays one line.
        Vyx::detail::diag(Vyx::detail::kLibraryPrefix, "VyxDesktopEntry::save() can't write the name '%s' to %s\n",
                          Vyx::detail::encodeEntryValue(refused).c_str(), filePath.c_str());
        return false;
    }
    // Validity becomes 1 whether or not the write succeeds (kept as it was).
    validity = 1;
    if (!ini.saveAtomically(filePath)) {
        Vyx::detail::diag(Vyx::detail::kLibraryPrefix, "VyxDesktopEntry::save() can't save file %s\n",
                          filePath.c_str());
        return false;
    }
    return ok;
}
