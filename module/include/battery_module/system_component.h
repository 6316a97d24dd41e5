#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "battery_module/entity_id.h"

struct ComponentProperty {
    std::string key;
    std::string value;
};

struct ComponentInfo {
    std::string name;
    std::string extraText;
    std::vector<ComponentProperty> properties;
    std::map<std::string, std::string> attributes;
};

struct ComponentInfoGroup {
    std::vector<ComponentProperty> properties;
    std::string name;
};

// A battery as the host sees it.
class SystemComponent {
public:
    SystemComponent() = default;
    virtual ~SystemComponent();

    virtual std::string getIndex();
    virtual ComponentInfo getInfo();
    virtual std::vector<ComponentInfoGroup> getInfoGroups();
    virtual int32_t zeroQuery() = 0;
    virtual bool firstTrueQuery() = 0;
    virtual bool secondTrueQuery() = 0;
    virtual void firstNoOp() = 0;
    virtual bool thirdTrueQuery() = 0;
    virtual void secondNoOp() = 0;
    virtual void thirdNoOp();

protected:
    ComponentInfo info;
    std::vector<ComponentInfoGroup> groups;
    std::string index;
};

// Owner of the components of one battery path.
class SystemComponentManager {
public:
    explicit SystemComponentManager(const EntityId &id) : id_(id) {}
    virtual ~SystemComponentManager();

    virtual EntityId getEntityId();
    virtual uint64_t getComponentCount();
    virtual SystemComponent *getComponent(uint32_t index);
    virtual bool isBatteryAvailable() = 0;
    virtual SystemComponent *getRefreshedComponent(uint32_t index) = 0;
    virtual void refreshComponents() = 0;

protected:
    std::vector<SystemComponent *> components;

private:
    EntityId id_;
};
