#pragma once

// The tables that the demonstration fills by the writer, with the kinds of their columns. Tests
// read them back by the same rows.

#include <span>

#include "server/demo/demo_writer.h"

namespace orvane::server::demo {

extern const DemoTable kEmployees;
extern const DemoTable kDepartment;
extern const DemoTable kSections;
extern const DemoTable kCostCenters;
extern const DemoTable kStructure;
extern const DemoTable kStructureDeputies;
extern const DemoTable kStructDepDates;
extern const DemoTable kAdmissibleNotifiers;
extern const DemoTable kKindSupplies;
extern const DemoTable kLevelsApproval;
extern const DemoTable kEmployeesFinSupp;
extern const DemoTable kCapExPlan;
extern const DemoTable kParams;
extern const DemoTable kCurrencies;
extern const DemoTable kTowns;
extern const DemoTable kKindSupplyLists;
extern const DemoTable kInvoiceDescr;
extern const DemoTable kRequestDescr;
extern const DemoTable kReceiptDescr;
extern const DemoTable kFreeNomElements;
extern const DemoTable kPartners;
extern const DemoTable kRates;
extern const DemoTable kMeasures;
extern const DemoTable kMaterials;
extern const DemoTable kServices;
extern const DemoTable kStores;
extern const DemoTable kUserStores;
extern const DemoTable kKindDocInventory;
extern const DemoTable kSupplyNaming;
extern const DemoTable kBaseSupplyList;
extern const DemoTable kBaseSupplyListDates;
extern const DemoTable kSupplyLists;
extern const DemoTable kSupplyListsDates;
extern const DemoTable kPartnerSupplyEntries;
extern const DemoTable kContracts;
extern const DemoTable kOrders;
extern const DemoTable kOrderRows;
extern const DemoTable kOrderApproval;
extern const DemoTable kRequests;
extern const DemoTable kRequestRows;
extern const DemoTable kRequestDates;
extern const DemoTable kRequestPayments;
extern const DemoTable kRequestApproval;
extern const DemoTable kTurns;
extern const DemoTable kDeliveries;
extern const DemoTable kDeliveryRows;

/// All of them.
std::span<const DemoTable* const> AllTables();

}  // namespace orvane::server::demo
