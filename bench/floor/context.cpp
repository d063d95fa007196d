// Contexts of the twins. Features are listed by path at once, and live as long as the caller's engine.
#include "context.h"

#include "../../Src/inc/engine_host.h"
#include "../../scriptdata/com_ptr.h"
#include "../../scriptdata/variant.h"

namespace {

void ListFeatures(ISetupFeatures* collection, const std::wstring& parent,
                  std::map<std::wstring, ISetupFeature*>& features)
{
    long count = 0;
    collection->Count(&count);
    for (long index = 1; index <= count; ++index) {
        vh::com_ptr<ISetupFeature> feature;
        collection->Item(vh::variant(index).get(), feature.put());
        vh::bstr name;
        feature->GetName(name.put());
        const std::wstring path = parent + name.c_str();
        features.emplace(path, feature.get());
        vh::com_ptr<ISetupFeatures> children;
        feature->GetChildren(children.put());
        ListFeatures(children.get(), path + L"\\", features);
    }
}

} // namespace

ObjectContext* __CreateObjectContext(ISetupHost* host, IServiceProvider*)
{
    auto context = std::make_unique<ObjectContext>();
    vh::com_ptr<ISetupFeatureHost> features;
    if (host && SUCCEEDED(host->QueryInterface(ISetupFeatureHost::iid, features.put_void()))) {
        features->GetFeatures(&context->features);
        ListFeatures(context->features, L"", context->media[L"DATA"].features);
    }
    return context.release();
}

void __ReleaseObjectContext(ObjectContext* context)
{
    vh::com_ptr<ISetupFeatures> held;
    held.attach(context->features);
    delete context;
}
