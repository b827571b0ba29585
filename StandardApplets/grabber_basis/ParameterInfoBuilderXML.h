#pragma once

#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

class Fg_StdMaster;
class Fx3Parameter;
class Fx3ParameterHeader;

/// Writes the GenApi document of one camera port: the nodes of every exported parameter in ascending order of
/// identifiers, a category for each parameter group in order of first use, and the port of the registers. Exported
/// are visible integers, doubles and enumerations that stand in a group, direct registers excepted.
///
/// Lives for one document: build() is called once. Borrows registry and master, on the thread of the exported call,
/// and refreshes nothing: the document shows the descriptions as they are.
class ParameterInfoBuilderXML {
public:
    /// A group of features, and below the root only a list of them: the document knows two levels.
    /// Owned by its parent; the root by the builder.
    class Category {
    public:
        /// \param parent takes the new category over; null for a root
        Category(const std::string& name, Category* parent);
        Category(const Category&) = delete;
        Category& operator=(const Category&) = delete;
        ~Category() = default;

        [[nodiscard]] const std::string& getName() const { return mName; }
        [[nodiscard]] size_t getChildCount() const { return mChildren.size(); }
        /// \param index less than getChildCount()
        [[nodiscard]] Category* getChild(unsigned index) const { return mChildren[index].get(); }
        /// \return the first child of this name, or null
        [[nodiscard]] Category* getChild(const std::string& name) const;
        [[nodiscard]] bool hasChild(const std::string& name) const { return getChild(name) != nullptr; }
        /// \param child taken over
        void addChild(Category* child) { mChildren.emplace_back(child); }
        [[nodiscard]] size_t getFeatureCount() const { return mFeatures.size(); }
        /// \param index less than getFeatureCount()
        [[nodiscard]] const std::string& getFeature(unsigned index) const { return mFeatures[index]; }
        /// Appends a feature, a second time too.
        void addFeature(const std::string& feature) { mFeatures.push_back(feature); }
        [[nodiscard]] bool hasFeature(const std::string& feature) const;

    private:
        std::string mName;
        std::vector<std::unique_ptr<Category>> mChildren;
        std::vector<std::string> mFeatures;
    };

    /// \param port 0 or 1
    ParameterInfoBuilderXML(Fx3ParameterHeader& header, Fg_StdMaster& master, int port);
    ParameterInfoBuilderXML(const ParameterInfoBuilderXML&) = delete;
    ParameterInfoBuilderXML& operator=(const ParameterInfoBuilderXML&) = delete;
    ~ParameterInfoBuilderXML();

    /// \return the whole document; it ends with a line feed
    [[nodiscard]] std::string build();

private:
    void buildXMLHeader(std::ostringstream& out);
    void startAppletDescription(std::ostringstream& out);
    void selectParameters();
    [[nodiscard]] bool isInTree(const Fx3Parameter& param) const;
    void buildParamDescr(std::ostringstream& out, const Fx3Parameter& param);
    [[nodiscard]] bool writeNodes(std::ostringstream& out, const Fx3Parameter& param);
    void addFeatureToCategory(const std::string& category, const std::string& feature);
    void buildCategories(std::ostringstream& out);
    void writeCategory(std::ostringstream& out, Category* category);
    void stopAppletDescription(std::ostringstream& out);

    Fx3ParameterHeader& mParamHeader;
    Fg_StdMaster& mMaster;
    int mPort;
    std::unique_ptr<Category> mRootCategory;
    std::set<std::string> mParameters;  // names of the exported parameters
};
