-- 0030_folds.sql
-- Why: whatever text a search may ask for is found in either case of its letters. The engine derives these folds from
-- their texts, so that nothing that writes a row can forget them.

alter table CapExPlan add column FoldInternalNumber text generated always as (orvane_fold(InternalNumber)) virtual;
alter table Deliveries add column FoldSuppDocNumber text generated always as (orvane_fold(SuppDocNumber)) virtual;
alter table Deliveries add column FoldCreatedFrom text generated always as (orvane_fold(CreatedFrom)) virtual;
alter table Deliveries add column FoldAnnulFrom text generated always as (orvane_fold(AnnulFrom)) virtual;
alter table Department add column FoldChief text not null generated always as (orvane_fold(Chief)) virtual;
alter table NomIn add column FoldName3 text generated always as (orvane_fold(Name3)) virtual;
alter table NomIn add column FoldName4 text generated always as (orvane_fold(Name4)) virtual;
alter table NomIn add column FoldName5 text generated always as (orvane_fold(Name5)) virtual;
alter table NomIn add column FoldName6 text generated always as (orvane_fold(Name6)) virtual;
alter table NomIn add column FoldName7 text generated always as (orvane_fold(Name7)) virtual;
alter table NomIn add column FoldName8 text generated always as (orvane_fold(Name8)) virtual;
alter table NomIn add column FoldName9 text generated always as (orvane_fold(Name9)) virtual;
alter table NomIn add column FoldName10 text generated always as (orvane_fold(Name10)) virtual;
alter table Partners add column FoldAddress text generated always as (orvane_fold(Address)) virtual;
alter table Partners add column FoldAddress2 text generated always as (orvane_fold(Address2)) virtual;
alter table Partners add column FoldTelephone1 text generated always as (orvane_fold(Telephone1)) virtual;
alter table Partners add column FoldTelephone2 text generated always as (orvane_fold(Telephone2)) virtual;
alter table Partners add column Foldemail text generated always as (orvane_fold(email)) virtual;
alter table PurchaseOrder add column FoldDescription text generated always as (orvane_fold(Description)) virtual;
alter table PurchaseOrder add column FoldDescription2 text generated always as (orvane_fold(Description2)) virtual;
alter table PurchaseOrder add column FoldRationale text generated always as (orvane_fold(Rationale)) virtual;
alter table PurchaseOrder add column FoldRationale2 text generated always as (orvane_fold(Rationale2)) virtual;
alter table PurchaseOrder add column FoldCreatedFrom text generated always as (orvane_fold(CreatedFrom)) virtual;
alter table PurchaseOrder add column FoldAmendFrom text generated always as (orvane_fold(AmendFrom)) virtual;
alter table PurchaseOrder add column FoldAnnulFrom text generated always as (orvane_fold(AnnulFrom)) virtual;
alter table SuppManifacOrder add column FoldDescription text generated always as (orvane_fold(Description)) virtual;
alter table SuppManifacOrder add column FoldDescription2 text generated always as (orvane_fold(Description2)) virtual;
alter table SuppManifacOrder add column FoldCreatedFrom text generated always as (orvane_fold(CreatedFrom)) virtual;
alter table SuppManifacOrder add column FoldAnnulFrom text generated always as (orvane_fold(AnnulFrom)) virtual;
alter table SuppliesContracts add column FoldContractNumber text generated always as (orvane_fold(ContractNumber)) virtual;
alter table UserAccessToStores add column FoldForUser text not null generated always as (orvane_fold(ForUser)) virtual;
