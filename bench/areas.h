// The measured areas, each in a file of its own.
#pragma once

#include "harness.h"

namespace bench {

void Handles(suite& s);
void NumberLists(suite& s);
void TextLists(suite& s);
void ListGrowth(suite& s);
void Strings(suite& s);
void TextRead(suite& s);
void TextWrite(suite& s);
void Trace(suite& s);
void Md5(suite& s);
void Disks(suite& s);
void Media(suite& s);
void Walk(suite& s);
void ScriptMedia(suite& s);
void IniFiles(suite& s);
void Registry(suite& s);
void ChildSearch(suite& s);
void Network(suite& s);
void Pictures(suite& s);
void Dialogs(suite& s);
void Views(suite& s);
void Load(suite& s);
void Setups(suite& s);

} // namespace bench
