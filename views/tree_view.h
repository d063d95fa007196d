// The items of a media in a tree control of a dialog, with check pictures.
#pragma once

#include <memory>

#include "../Src/inc/engine_features.h"
#include "image_list.h"
#include "view_scene.h"

// Where the engine reports changes of the selection. It is a part of its tree: nobody counts its references.
class ComponentEventHandler final : public ISetupBasicFeatureStateEvents {
public:
    explicit ComponentEventHandler(HWND tree) : m_tree(tree) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE OnStateChanged(LONG64 item, long selected, long locked) override;

private:
    HWND m_tree;
};

struct TreeView final : vh::tree_fill {
public:
    // Pictures of an item's state, and what the last click made of one; 0 stands for a click elsewhere.
    enum item_state : int32_t { none = 0, clear = 1, checked = 2, locked = 3 };
    // Results of Create's steps and of the look-up.
    enum : int32_t { no_picture = -120, no_caret = -121 };

    // Null when control, pictures or memory are missing.
    static TreeView* Create(const vh::ViewScene& scene, HWND dialog, int32_t control, std::wstring_view media,
                            std::wstring_view root, int32_t depth);
    // What a script handed over, or null when no tree of that address lives.
    static std::shared_ptr<TreeView> Live(const void* tree);
    // Trees whose dialogs outlive the context.
    static void EndAll(const ObjectContext* context);

    TreeView(const TreeView&) = delete;
    TreeView& operator=(const TreeView&) = delete;
    ~TreeView() override = default;

    // The name of the item that has the caret; null when none has.
    const stringx* Caret() const;
    int32_t last_state() const { return m_lastState; }

    vh::tree_item Insert(vh::tree_item parent, const vh::tree_node& node) override;
    void EnsureVisible(vh::tree_item item) override;
    ISetupBasicFeatureStateEvents* Events() override { return &m_events; }
    void KeepCookie(vh::tree_item item, int32_t cookie) override;

private:
    TreeView(const vh::ViewScene& scene, HWND dialog, int32_t control, HWND tree, std::wstring_view media,
             std::wstring_view root);

    static LRESULT CALLBACK Procedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam);
    static void End(HWND dialog);
    static void Replace(HWND dialog, HWND control);
    int32_t MakePictures();
    void DropPictures() const;
    int32_t Fill(int32_t depth);
    void OnNotify(const NMHDR& header);
    void OnExpanding(const NMTREEVIEWW& notice);
    void OnClick();
    void Toggle(HTREEITEM item);
    void SetRedraw(bool on) const;
    CVHRTMedia& media() const { return m_scene.media.Find(m_media.view()); }

    stringx m_media;
    stringx m_root;
    HWND m_tree;
    HWND m_dialog;
    int32_t m_control;
    vh::image_list m_checks;
    vh::image_list m_items;
    bool m_imagesUsable = true;
    vh::ViewScene m_scene;
    ComponentEventHandler m_events;
    int32_t m_lastState = none;
    // Another tree of the same dialog, made before.
    std::shared_ptr<TreeView> m_other;
};
