// Window services: what reaches the engine, in which order, and what comes back when it fails; fonts and files.
#include "../support/bare_context.h"
#include "../support/bitmap_writer.h"
#include "../support/session.h"

namespace {

constexpr int32_t caption_style = static_cast<int32_t>(0xFF000100);

// What a call makes of the engine's window objects, one call a word.
std::wstring CallsOf(const Session& session, const std::function<void()>& body)
{
    session.calls().Reset();
    session.calls().Record(true);
    body();
    std::wstring made;
    for (const std::wstring& line : session.calls().Lines())
        for (const wchar_t* type : {L"Window", L"Title", L"Bitmap", L"Message", L"Progress"})
            made += line.starts_with(L"ISetup" + std::wstring(type)) ? line + L" " : L"";
    return made;
}

TEST(WindowServices, TellTheTitleInTheirOrder)
{
    const Session session;
    EXPECT_EQ(CallsOf(session, [&] { EXPECT_EQ(_SetTitle(session, L"T", 24, 0xFFFFFF), 0); }),
              L"ISetupWindow.CreateTitle() ISetupTitle.SetKind(10) ISetupTitle.SetText(\"T\") "
              L"ISetupTitle.SetStyle(16777215) ISetupTitle.SetSize(24) ISetupTitle.SetFace(\"Times New Roman\") "
              L"ISetupTitle.SetFontStyle(20544) ISetupTitle.SetShadow(-1) ISetupTitle.Show(1) ");
    // Bits of a style that are kept; 8 alone is plain, others leave the one before.
    for (const auto& [given, kept] : {std::pair(0x7FFF, L"28736"), {0x1, L"28736"}, {0x8, L"0"}, {0x49, L"64"}})
        EXPECT_EQ(CallsOf(session, [&, style = given] { EXPECT_EQ(_SetFont(session, 1, style, L"Arial"), 0); }),
                  L"ISetupTitle.SetFace(\"Arial\") ISetupTitle.SetShadow(0) ISetupTitle.SetFontStyle(" +
                      std::wstring(kept) + L") ");
    EXPECT_EQ(_SetFont(session, 2, 0, L"Arial"), -1);
    EXPECT_EQ(CallsOf(session, [&] { EXPECT_EQ(_SetTitle(session, L"C", 0, caption_style), 0); }),
              L"ISetupWindow.SetCaption(\"C\") ISetupProgress.SetTitle(\"C\") ");
    // A face that the engine refuses is not kept.
    session.calls().FailCall(L"ISetupTitle.SetFace(\"Bad\")", E_FAIL);
    EXPECT_EQ(_SetFont(session, 1, 0, L"Bad"), E_FAIL);
    EXPECT_NE(CallsOf(session, [&] { _SetTitle(session, L"T", 1, 0); }).find(L"SetFace(\"Arial\")"),
              std::wstring::npos);
}

TEST(WindowServices, ChooseOnePlacementAndOneColour)
{
    const Session session;
    session.folder.Payload(L"red.bmp", PlainBitmap(8, 6, 0xFF0000));
    const std::wstring file = session.folder.Setup(L"red.bmp");
    constexpr const wchar_t* given = L") ISetupBitmap.SetPosition(3, 4";
    constexpr const wchar_t* corner = L") ISetupBitmap.SetPosition(0, 0";
    Table<const wchar_t*, int32_t, const wchar_t*, const wchar_t*> cases = {
        {L"", 0, L"2, -1", corner},    {L"", 64 | 128, L"64, -1", L""},   {L"", 32, L"2, 16711935", corner},
        {L"", 1 | 4, L"1, -1", given}, {L"", 128 | 16, L"128, -1", L""},  {L";1,2,3", 32 | 2, L"2, 197121", given},
        {L"", 8 | 4, L"4, -1", given}, {L"", 16384, L"16384, -1", given}, {L";1,2", 32 | 2, L"2, 16711935", given},
        {L"", 16 | 1, L"16, -1", L""}, {L"", 16384 | 8, L"8, -1", given}, {L"; 255,0, 255", 34, L"2, 16711935", given}};
    for (const auto& [behind, flags, made, position] : cases) {
        const std::wstring name = file + behind;
        const auto place = [&, how = flags] { EXPECT_EQ(_PlaceBitmap(session, name.c_str(), 1, 3, 4, how), 0); };
        EXPECT_EQ(CallsOf(session, place), L"ISetupWindow.CreateBitmap(\"" + file + L"\", " + made + position + L") ")
            << behind << flags;
    }
    const long held = session.engine->LiveObjects();
    EXPECT_EQ(_PlaceBitmap(session, file.c_str(), 2, 0, 0, 2), 0);
    EXPECT_EQ(session.engine->LiveObjects(), held + 1);
    EXPECT_EQ(_PlaceBitmap(session, L"none.bmp", 2, 0, 0, 2), static_cast<int32_t>(0x80070002));
    EXPECT_EQ(session.engine->LiveObjects(), held + 1) << "the one before stays";
    EXPECT_EACH(0, _PlaceBitmap(session, L"", 2, 0, 0, 0x8002), _PlaceBitmap(session, L"", 77, 0, 0, 0x8000));
    EXPECT_EQ(session.engine->LiveObjects(), held);
    // A lone number behind a ";" is a resource's, with a colour or without.
    const std::wstring library = StandardTexts() + L";501";
    EXPECT_EACH(0, _PlaceBitmap(session, library.c_str(), 1, 0, 0, 2),
                _PlaceBitmap(session, (library + L";9,9,9").c_str(), 1, 0, 0, 34),
                _PlaceBitmap(session, library.c_str(), 1, 0, 0, 34));
}

TEST(WindowServices, ChooseTheStatusTemplateByStyle)
{
    for (const auto& [style, number] : std::map<int32_t, const wchar_t*>{
             {4, L"10301"}, {5, L"10305"}, {6, L"10306"}, {57, L"10302"}, {58, L"10303"}}) {
        const TextSession session(L"", StandardTexts());
        const std::wstring folder = Filled([&](auto... to) { _GetSupportDir(session, to...); });
        EXPECT_EQ(CallsOf(session.session(), [&, of = style] { EXPECT_EQ(_EnableStatus(session, of), 0); }),
                  L"ISetupWindowEx1.DropPicture() ISetupWindow.GetHandle() ISetupProgressOpen.OpenEx(\"" +
                      StandardTexts() + L"\", " + number +
                      L", 0) ISetupProgress.GetWindow(-1) ISetupProgress.ArmWindow(-1) ISetupProgress.GetBar() "
                      L"ISetupWindow.CreateBar(\"" +
                      folder +
                      L"\") ISetupProgress.SetBar() ISetupProgressBar.SetHeight(0) "
                      L"ISetupProgressBar.SetWidth(0) ISetupProgress.GetWindow(-1) ");
        EXPECT_EQ(_SizeWindow(session, 35, 1, 2), -1);
        EXPECT_EQ(CallsOf(session.session(), [&] { EXPECT_EQ(_SizeWindow(session, 36, 1, 2), 0); }),
                  L"ISetupProgress.GetBar() ISetupProgressBar.SetHeight(2) ISetupProgressBar.SetWidth(1) ");
        EXPECT_EQ(_DisableStatus(session), 0);
    }
}

// Each engine call of a scenario fails in turn: its code is the result or nothing is, and nothing stays held.
TEST(WindowServices, GiveTheFirstFailureBack)
{
    constexpr auto failure = static_cast<HRESULT>(0x80040123);
    const std::wstring picture = StandardTexts() + L";501";
    Table<const char*, std::function<int32_t(ObjectContext*)>, int> scenarios = {
        {"_EnableStatus", [](auto* context) { return _EnableStatus(context, 4); }, 9},
        {"_SetTitle", [](auto* context) { return _SetTitle(context, L"T", 24, 0); }, 9},
        {"caption", [](auto* context) { return _SetTitle(context, L"T", 0, caption_style); }, 3},
        {"_SdShowMsg", [](auto* context) { return _SdShowMsg(context, L"T", 1); }, 3},
        {"_SetAltMainImage", [](auto* context) { return _SetAltMainImage(context, ImageText, L"T"); }, 2},
        {"_PlaceBitmap", [&](auto* context) { return _PlaceBitmap(context, picture.c_str(), 1, 3, 4, 2); }, 2}};
    for (const auto& [name, run, least] : scenarios) {
        int failed = 0;
        bool reached = true;
        for (long n = 1; reached; ++n) {
            const TextSession session(L"", StandardTexts());
            engine::Recorder& calls = session.calls();
            calls.Reset();
            calls.FailCall(n, failure);
            const int32_t result = run(session);
            reached = calls.Calls() >= n;
            EXPECT_TRUE(result == 0 || result == failure) << name << n << " " << result;
            failed += result == failure;
            calls.Reset();
            _DisableStatus(session);
            _SdShowMsg(session, L"", 0);
        }
        EXPECT_GE(failed, least) << name;
    }
}

TEST(WindowServices, AnswerByTheirSelectors)
{
    const Session session;
    EXPECT_EQ(CallsOf(session,
                      [&] {
                          EXPECT_EQ(_SetColor(session, 4, 1), 0);
                          EXPECT_EQ(_SetColor(session, 11, 1), -1);
                          EXPECT_EACH(0, _SetColor(session, 12, 0x42000001),
                                      _SetColor(session, 12, static_cast<int32_t>(0xC2000001)));
                          EXPECT_EACH(-1, _SetDisplayEffect(session, 8), _SetDisplayEffect(session, -1));
                          EXPECT_EACH(0, _SetDisplayEffect(session, 7), EnableHourGlass(session, 5),
                                      _DisableBranding(session, L"x"), _EnableSkins(session, 0), _IsSkinLoaded(session),
                                      _SetPaletteFile(session, L"none"));
                          // The upper bits stay as given.
                          EXPECT_EACH(0, _EnableDialogCache(session, 0x10001), _EnableDialogCache(session, 0));
                      }),
              L"ISetupWindow.SetColor(1107296257, 0) ISetupWindow.SetColor(-1040187391, -1) "
              L"ISetupWindowEffect.SetEffect(7) ISetupWindow.SetWaitCursor(-1) ISetupProgress.SetOption(7, 0) "
              L"ISetupWindowEx1.SetCache(131071) ISetupWindowEx1.SetCache(0) ISetupWindowEx1.DropPicture() ");
    variant window(L"before");
    EXPECT_EQ(__GetMainWindow(session, &window.get()), 0);
    EXPECT_EQ(window.type(), VT_DISPATCH);
    EXPECT_EQ(MessageBeepP(MB_OK), 1);

    const BareContext bare;
    EXPECT_EQ(__GetMainWindow(bare, window.put()), static_cast<int32_t>(0x80004003));
    EXPECT_EQ(_SetTitle(bare, L"T", 1, 1), 0);
    EXPECT_EACH(-1, _SetFont(bare, 1, 1, L"T"), _SetColor(bare, 12, 1), _SdShowMsg(bare, L"T", 0));
    EXPECT_EACH(E_FAIL, _PlaceBitmap(bare, L"T", 1, 0, 0, 0), EnableHourGlass(bare, 1));
    EXPECT_EACH(0, _SizeWindow(bare, 36, 1, 1), _EnableDialogCache(bare, 0));
}

TEST(Fonts, AreMadeInTheFaceOrInArial)
{
    int64_t handle = 0;
    {
        const BareContext context;
        handle = _GetFont(context, L"no such face", 12, 0x40 | 0x2000 | 4);
        LOGFONTW font{};
        ASSERT_NE(GetObjectW(reinterpret_cast<HFONT>(handle), sizeof(font), &font), 0);
        EXPECT_STREQ(font.lfFaceName, L"Arial");
        EXPECT_TRUE(font.lfUnderline && font.lfStrikeOut && !font.lfItalic);
        // The height at 96 dots an inch.
        EXPECT_EQ((std::vector<long>{font.lfHeight, font.lfWeight, font.lfOutPrecision, font.lfPitchAndFamily,
                                     font.lfCharSet, font.lfQuality}),
                  (std::vector<long>{-16, 700, 7, 34, 0, 1}));
        const auto known = reinterpret_cast<HFONT>(_GetFont(context, L"TAHOMA", 9, 0x1000));
        GetObjectW(known, sizeof(font), &font);
        EXPECT_EQ(lstrcmpiW(font.lfFaceName, L"Tahoma"), 0);
        EXPECT_TRUE(font.lfItalic && font.lfWeight == 400);
    }
    EXPECT_EQ(GetObjectType(reinterpret_cast<HFONT>(handle)), 0u) << "goes with the context";
    EXPECT_NE(_IsFontTypefaceNameAvailable(L"Tahoma"), 0);
    EXPECT_EQ(_IsFontTypefaceNameAvailable(L"no such face"), 0);
    EXPECT_EACH(-1, _IsFontTypefaceNameAvailable(L""), _IsFontTypefaceNameAvailable(nullptr));
}

TEST(Fonts, TellTheNamesInTheirFiles)
{
    const std::wstring file = Filled(GetWindowsDirectoryW) + L"\\Fonts\\tahoma.ttf";
    constexpr int32_t family = 1, english = 0x409;
    Table<std::wstring, int32_t, int32_t, int32_t, int32_t, const wchar_t*> cases = {
        {file, family, 12, 0, 6, L"Tahoma"},   {file, family, 11, -5, 12, L"~"},
        {file, family, -1, -5, 12, L"~"},      {file, 9999, 100, -1, 100, L"~"},
        {L"none", family, 100, -1, 100, L"~"}, {StandardTexts(), family, 9, -1, 9, L"~"}};
    for (const auto& [path, name, room, result, size_after, text] : cases) {
        wchar_t buffer[64] = L"~";
        int32_t size = room;
        EXPECT_GIVES(_GetTrueTypeFontFileInfo(path.c_str(), name, english, buffer, &size), result, size, size_after);
        EXPECT_STREQ(buffer, text) << room;
    }
    EXPECT_EQ(_GetTrueTypeFontFileInfo(file.c_str(), family, english, nullptr, nullptr), -1);
}

TEST(WindowServices, ReadWholeFilesAndTheFontSubstitutes)
{
    const TextSession session(L"", StandardTexts());
    std::string content(3000, 'x');
    content[1500] = '\0';
    session.folder().Payload(L"big.txt", content);
    variant text;
    EXPECT_EQ(_SendRequest(session.folder().Setup(L"big.txt").c_str(), text.put()), 0);
    EXPECT_EQ(text.text(), std::wstring(content.begin(), content.end()));
    EXPECT_EQ(_SendRequest(L"C:\\no such file", text.put()), 0);
    EXPECT_TRUE(text.type() == VT_BSTR && text.text().empty());

    wchar_t buffer[512] = L"~";
    EXPECT_EQ(GetFontSub(session, buffer), 1);
    EXPECT_STREQ(buffer, L"Tahoma=Arial");
    const TextSession without(L"", UserTexts());
    EXPECT_EQ(GetFontSub(without, buffer), 0);
}

// What the status window is told after each call, and with it every dialog; nothing where nothing changes.
TEST(MainImages, ChangeByKindOrByScale)
{
    const Session session;
    session.folder.Payload(L"red.bmp", PlainBitmap(8, 6, 0xFF0000));
    const std::wstring file = session.folder.Setup(L"red.bmp"), folder = session.folder.Setup(L"");
    constexpr auto no_file = static_cast<int32_t>(0x80070004);
    enum way { kind, scale };
    const Table<way, int32_t, std::wstring, int32_t, std::wstring> calls = {
        {kind, ImageText, L"first", 0, L"first"},
        // Where there is no text before, the current one becomes it.
        {scale, 0, L"", 0, L"@!"},
        {scale, -1, L"ignored", 0, L"first"},
        {kind, ImageText, L"second", 0, L"second"},
        {kind, ImageNone, L"ignored", 0, L"@!"},
        {kind, ImagePrevious, L"ignored", 0, L"first"},
        {kind, 2, L"x", 0, L"~"},
        {kind, ImageFile, file + L"x;1", no_file, L"~"},
        {kind, ImageFile, folder, no_file, L"~"},
        {kind, ImageFile, file + L";1;0", 0, file + L";1;0"},
        {scale, 0, L"", 0, L"@!"},
        {scale, -1, L"", 0, L"first"},
        {scale, 24, file, -2, L"~"},
        {scale, -2, file, -2, L"~"},
        {scale, 25, file + L"x", no_file, L"~"},
        {scale, 25, file, 0, L"@@" + file + L";25"},
        {kind, ImagePrevious, L"", 0, L"first"}};
    for (const auto& [by, number, text, result, told] : calls) {
        const auto call = by == kind ? &_SetAltMainImage : &_SetAltMainImageEx;
        EXPECT_EQ(CallsOf(session, [&, n = number, &t = text,
                                    r = result] { EXPECT_EQ(call(session, n, t.c_str()), r) << n << t; }),
                  told == L"~" ? L"" : L"ISetupProgress.SetMainImage(\"" + told + L"\") ");
    }
}

TEST(StatusWindow, TakesLinksAndCostsWithoutBeingOpen)
{
    const TextSession session(L"", StandardTexts());
    EXPECT_EQ(_FeatureSpendCost(session, 1, 2), -1) << "nobody asked for the service yet";
    EXPECT_EQ(_StatusUpdate(session, 1, 70), -1);
    EXPECT_EQ(_ComponentMoveData(session, L"DATA", 0), 0);
    EXPECT_EQ(session.session().CallsOf(L"ISetupProgress.ReadPosition"), 0) << "linked all the same";
    EXPECT_EQ(CallsOf(session.session(), [&] { EXPECT_EQ(_FeatureSpendCost(session, 1, 2), 0); }),
              L"ISetupProgressCost.SpendCost(1, 2) ");
    const Table<int32_t, int32_t, const wchar_t*> products = {
        {2, 3, L"0, 6"}, {0x8000, 0x10000, L"-1, -2147483648"}, {-1, 5, L"-1, -5"}, {0x10000, 0x10000, L"0, 0"}};
    for (const auto& [a, b, spent] : products)
        EXPECT_EQ(
            CallsOf(session.session(), [&, a = a, b = b] { EXPECT_EQ(_FeatureSpendUninstallCost(session, a, b), 0); }),
            std::wstring(L"ISetupProgressCost.SpendCost(") + spent + L") ");
}

TEST(OwnWindowsOfAnEngine, LeaveNothingToTheLibrary)
{
    const TextSession session(L"", StandardTexts(), nullptr, {{43, variant(true)}});
    EXPECT_EQ(CallsOf(session.session(),
                      [&] {
                          for (const int32_t refused :
                               {_DefineDialog(session, L"d", nullptr, L"", 10301, L"", 0, nullptr, 1),
                                _EndDialog(session, L"ProgressDlg"), _ReleaseDialog(session, L"d"),
                                _DialogSetFont(session, L"Arial", 8), _DisableStatus(session),
                                _SetTitle(session, L"T", 1, caption_style), _DisableBranding(session, L""),
                                _SetAltMainImage(session, ImageNone, L""), _SetAltMainImageEx(session, 0, L"")})
                              EXPECT_EQ(refused, -1);
                      }),
              L"");
    // Its window gets the library alone; a success of any kind is 0.
    session.calls().FailCall(L"ISetupProgress.Open(", S_FALSE);
    session.calls().Record(true);
    EXPECT_EQ(_EnableStatus(session, 4), 0);
    EXPECT_EQ(session.session().CallsOf(L"ISetupProgress.Open(\"" + StandardTexts() + L"\", 0)"), 1);
    EXPECT_EQ(_CmdGetHwndDlg(session, L"ProgressDlg"), 0);
    wchar_t name[16];
    EXPECT_EQ(_GetCurrentDialogName(session, name, 16), -1);
}

} // namespace
