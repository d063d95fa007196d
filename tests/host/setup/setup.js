if (ComponentMoveData("DATA", 0) < 0)
    throw new Error("the data was not moved");
if (CreateRegistrySet("DATA", "Main") < 0)
    throw new Error("the registry was not written");
Print("installed to ", TargetFolder);
