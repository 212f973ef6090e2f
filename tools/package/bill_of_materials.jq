# The bill of materials from tables of files (path, SHA-1, SHA-256) and of components (name,
# version, package URL, licence, file of the licence texts), with tabs between the columns.
def rows: split("\n") | map(select(. != "") | split("\t"));
def unknown: "NOASSERTION";
def type_of(file):
    if file | endswith(".dll") then ["BINARY"]
    elif file | endswith(".debug") then ["OTHER"]
    else ["TEXT"] end;

($files | rows | to_entries | map({
    SPDXID: "SPDXRef-File-\(.key + 1)",
    fileName: .value[0],
    fileTypes: type_of(.value[0]),
    checksums: [{algorithm: "SHA1", checksumValue: .value[1]},
                {algorithm: "SHA256", checksumValue: .value[2]}],
    licenseConcluded: unknown,
    copyrightText: unknown
})) as $files
| ($components | rows | map({
    SPDXID: "SPDXRef-Package-\(.[0] | gsub("[^A-Za-z0-9.-]"; "-"))",
    name: .[0],
    versionInfo: .[1],
    downloadLocation: unknown,
    filesAnalyzed: false,
    licenseConcluded: unknown,
    licenseDeclared: .[3],
    licenseComments: "The texts are in \(.[4]).",
    copyrightText: unknown,
    externalRefs: [{referenceCategory: "PACKAGE-MANAGER", referenceType: "purl",
                    referenceLocator: .[2]}]
})) as $components
| "tallyport-\($version)-win64" as $name
| ($files[] | select(.fileName == "./TallyportPlugin.dll")) as $library
| {
    spdxVersion: "SPDX-2.3",
    dataLicense: "CC0-1.0",
    SPDXID: "SPDXRef-DOCUMENT",
    name: $name,
    documentNamespace: "https://spdx.org/spdxdocs/\($name)-\($verification)",
    creationInfo: {created: $created, creators: ["Tool: tallyport-make_package-\($version)"]},
    packages: ([{
        SPDXID: "SPDXRef-Package-tallyport",
        name: "tallyport",
        versionInfo: $version,
        packageFileName: "\($name).zip",
        primaryPackagePurpose: "LIBRARY",
        downloadLocation: unknown,
        filesAnalyzed: true,
        packageVerificationCode: {
            packageVerificationCodeValue: $verification,
            packageVerificationCodeExcludedFiles: ["./tallyport-\($version).spdx.json",
                                                   "./SHA256SUMS"]
        },
        licenseConcluded: unknown,
        licenseDeclared: unknown,
        copyrightText: unknown
    }] + $components),
    files: $files,
    relationships: (
        [{spdxElementId: "SPDXRef-DOCUMENT", relationshipType: "DESCRIBES",
          relatedSpdxElement: "SPDXRef-Package-tallyport"}]
        + ($files | map({spdxElementId: "SPDXRef-Package-tallyport", relationshipType: "CONTAINS",
                         relatedSpdxElement: .SPDXID}))
        + ($components | map({spdxElementId: $library.SPDXID, relationshipType: "STATIC_LINK",
                              relatedSpdxElement: .SPDXID})))
}
